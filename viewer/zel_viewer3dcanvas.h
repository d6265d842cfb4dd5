#pragma once

#include "dialogs/zel_sequencecanvas.h"
#include "dialogs/zel_styles.h"
#include "image/kep.h"
#include "model/zel_export.h"
#include "model/zel_imageiterator.h"
#include "model/zel_view.h"
#include "viewer/zel_drwin3d.h"
#include "viewer/zel_events.h"
#include "viewer/zel_infoframe.h"
#include "viewer/zel_sequencetimer.h"
#include "volume/vol3D_frame.h"

#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/weakref.h>

#include <optional>
#include <vector>

class WXDLLIMPEXP_FWD_CORE wxDC;
class WXDLLIMPEXP_FWD_CORE wxIconBundle;

namespace zel {

/// What a canvas draws and saves as it is, rather than by the rules of old that hosts may rely on.
struct zel_TruePictures {
    /// The scale bar is drawn at the picture's scale on each axis, with the length that the user has chosen or else a
    /// round one, about a sixth of the window.
    bool scaleBar = false;
    /// The cut pointer is mirrored together with the picture.
    bool cutPointer = false;
    /// Picture k of a gallery shows slice k as the XY window would, whatever its zoom, and all of it.
    bool gallery = false;
    /// The volume window draws the meshes of labels whole and on the voxels of their labels, and nearer things hide
    /// farther ones. A volume window that is there already stays as it is: to be set before the first ShowVolVis.
    bool meshes = false;
};

/// The part of the viewer that knows no voxels: a panel with three drawing windows over a View, the decorations'
/// styles and the state of browsing. Everything that touches voxels is a virtual operation of
/// zel_ImageViewer3dCanvas<T>.
///
/// Most operations are the View's own, followed by what they say must be done again. A host does the same with Apply:
/// canvas.Apply(canvas.GetView().MoveCutIn(plane, horizontal, vertical)).
///
/// A change does not paint: it marks what must be computed again and refreshes, and the work is done in the next paint
/// of each window. Positions and sizes are in microns, scales in pixels per micron. Wrong view input is ignored.
class ZEL_EXPORT zel_Viewer3dCanvas : public wxPanel, public zel_SequenceCanvas {
public:
    /// Makes the three drawing windows, over a view that has no image yet. Parameters are as for wxPanel.
    zel_Viewer3dCanvas(wxWindow* parent, int id, const wxPoint& pos, const wxSize& size);
    ~zel_Viewer3dCanvas() override;

    /// Mirrors the stored pictures along an axis (0 X, 1 Y, 2 Z), after its flag was flipped.
    virtual void ReverseAxis(int axis) = 0;
    /// Draws one window's picture at (0, 0).
    virtual void Draw(wxDC& dc, zel_ProjectionType type) = 0;
    virtual void GetIcons(wxIconBundle& bundle);           ///< icons of the present picture; adds none here
    virtual kep::Vector3d<std::size_t> GetImageSize() = 0; ///< voxels
    virtual int GetTime() = 0;                             ///< number of the frame that is shown
    virtual int GetImageCount() = 0;                       ///< frames of the image
    virtual kep::Resolution GetResolution() = 0;           ///< pixels per micron
    // What the commands that save do for each file. The name's suffix decides on the format. A file that cannot be
    // written is told as an error in the log, and one that was there stays as it was; a picture that is too large is
    // thrown, as kep::LibException or std::bad_alloc.

    /// Saves the voxels of the frame that is shown, whatever the view makes of them.
    virtual void Save3dData(const wxString& fileName) = 0;
    /// Saves the windows that are shown and asked for as the user sees them. Where there is none, a message box says
    /// so. Sizes are those of the windows' pictures: of one that is hidden, that of its last picture.
    /// @param fileName     in the file system's encoding, here and below
    /// @param spacing      pixels between two windows
    /// @param projections  zel_PT_XY, zel_PT_XZ, zel_PT_YZ or zel_PT_ALL
    virtual void SaveActualView(const char* fileName, int spacing, zel_ProjectionType projections) = 0;
    /// Saves a sheet of what the XY window shows of slices `first` to `last`. With GetTruePictures().gallery each has
    /// its own picture, of the window's size. Otherwise they come with as many pixels for each as a slice
    /// has voxels: true pictures need one pixel a voxel, and the whole image visible. Slice 0 lies on the box's face,
    /// where the cut cannot be: its picture is the one before. Does nothing for a first slice above the last.
    /// @param fileName     in the file system's encoding
    /// @param first, last  slices, numbered from 0
    /// @param step         below 1 counts as 1
    /// @param byRows       `count` is the number of rows, else of columns; below 1 counts as 1
    /// @param count        of rows or columns, as byRows says; below 1 counts as 1
    /// @param spacing      pixels between two pictures
    virtual void SaveGalleryView(const char* fileName, int first, int last, int step, bool byRows, int count,
                                 int spacing) = 0;
    /// Size of the canvas at which the whole image is seen at the present zoom, for the windows that are shown.
    virtual wxSize GetOptimalSize();
    /// The notifications: what has changed, and in which windows it shows.
    virtual void OnCutChange(zel_ProjectionType mask);
    virtual void OnVis3dChange(zel_ProjectionType mask);        ///< another part of the image is visible
    virtual void OnContentChange(zel_ProjectionType mask);      ///< cut or maximum intensity projection
    virtual void MappingChanged(zel_MappingEvent& event);       ///< the mapper gives other colours
    virtual void OverlayingChanged(zel_OverlayingEvent& event); ///< labels, their colours or whether they are shown
    virtual void OnDataChange();                     ///< the image has other voxels, and perhaps another geometry
    virtual void OnTimeChange();                     ///< another frame, by the state of browsing
    virtual void OnMouse3d(zel_Mouse3dEvent& event); ///< the pointer has done something in a drawing window
    /// Uploads the present frame to the volume window, if that is shown.
    virtual void UpdateVolVis();
    /// Makes the surfaces of the present frame's labels anew, if there is a volume window.
    virtual void UpdateIsosurface();
    /// Shows the info window, made when it is first shown, or hides it. The keyboard stays where it is.
    ///
    /// It stands at the corner that the drawing windows leave free, and follows the frame by the frame's move events:
    /// the toolkit sends none when a program moves a frame. It does not float either: a frame that is raised may cover
    /// it, and it stays on the screen when the frame is iconized. The user may close it, which destroys it; the next
    /// Show makes another one.
    virtual void InfoFrame_Show(bool show);
    virtual void InfoFrame_Create(); ///< makes the info window; derived canvases make one with more rows
    /// The three updates do nothing while the info window is not shown; the first one, neither while its page isn't.
    virtual void InfoFrame_UpdatePixelInfo() = 0;
    virtual void InfoFrame_UpdateImageInfo() = 0;        ///< voxels, their size, and the type
    virtual void InfoFrame_UpdateCutAndVisBoxInfo() = 0; ///< cut, visible and bounding box
    /// Marks the windows of the mask for resampling, and refreshes.
    virtual void MakeDirtyAndRefresh(zel_ProjectionType mask) = 0;
    virtual wxString CreateTitle() = 0; ///< for the parent's title, when the time changes

    /// The state of the view. Who changes it applies what the operation returns.
    View& GetView() { return m_view; }
    const View& GetView() const { return m_view; } ///< to read
    /// Does again what an operation on the view asks for: layout, notifications, refreshes.
    void Apply(const ViewChange& change);
    /// Offset, size and resolution of the image.
    ImageGeometry GetImageGeometry();

    /// Zoom has no bounds: level n > 0 magnifies n + 1 times, n < 0 reduces 1 - n times.
    void ZoomIn() { Apply(m_view.ZoomIn()); }
    void ZoomOut() { Apply(m_view.ZoomOut()); }       ///< one level out
    void NormalZoom() { Apply(m_view.NormalZoom()); } ///< to level 0
    /// The level: 0 shows the base scale.
    int GetZoom() const { return m_view.options.zoom; }
    /// Centres the windows on the cut. Notifies nobody.
    void CenterView() { m_view.CentreOnCut(); }
    /// Moves the cut, if the point lies strictly inside the bounding box; ignores it otherwise.
    void ChangeCut(const kep::Vector3d<float>& point) { Apply(m_view.MoveCut(point)); }
    /// Mirrors the display of an axis. @return its new state; false for an axis above 2
    bool ToggleAxisReverse(int axis);
    /// @param axis  0 X, 1 Y, 2 Z
    bool IsAxisReversed(std::size_t axis) const { return m_view.options.Reversed(axes[axis]); }
    /// Shows or hides windows, and arranges them anew.
    void ShowDrWin(zel_ProjectionType mask, bool show) { Apply(m_view.Show(mask, show)); }
    /// All windows of the mask are shown; so true for an empty mask.
    bool IsDrWinShown(zel_ProjectionType mask) const { return m_view.IsShown(mask); }
    /// Lets windows show the cut or the maximum intensity projection.
    void ChangeContent(zel_ProjectionContent content, zel_ProjectionType mask) {
        Apply(m_view.SetContent(content, mask));
    }
    /// What a window shows; for any other mask autofocus (the maximum intensity projection) if all
    /// three windows show it, otherwise the cut.
    zel_ProjectionContent GetContent(zel_ProjectionType type) const { return m_view.GetContent(type); }

    /// Centres the windows on a point, as far as the image reaches, and shows it.
    void CentreOn(const kep::Vector3d<float>& point);

    const zel_TruePictures& GetTruePictures() const { return m_truePictures; } ///< as SetTruePictures has left them
    /// All are off unless a host asks for them. Refreshes.
    void SetTruePictures(const zel_TruePictures& truePictures);

    /// Annotation and scale bar are drawn.
    bool GetInfoFlag() const { return m_decorations.showAnnotation; }
    /// Shows or hides annotation and scale bar; refreshes nothing by itself.
    void ToggleInfoFlag() { m_decorations.showAnnotation = !m_decorations.showAnnotation; }

    /// Copies the view's options out.
    void GetSettings(zel_CanvasSettings& settings) const;
    /// Takes the view's options. A cut that is not strictly inside the box becomes the box's centre.
    void SetSettings(const zel_CanvasSettings& settings);

    const zel_CutPointerStyle& GetPointerStyle() const { return m_decorations.cutPointer; } ///< of the cut pointer
    /// Refreshes nothing by itself.
    void SetPointerStyle(const zel_CutPointerStyle& style) { m_decorations.cutPointer = style; }
    /// How the windows are annotated.
    const zel_ProjectionAnnotationStyle& GetProjectionAnnotationStyle() const { return m_decorations.annotation; }
    const zel_ScaleBarStyle& GetScaleBarStyle() const { return m_decorations.scaleBar; } ///< of the scale bar
    const zel_TimeBarStyle& GetTimeBarStyle() const { return m_decorations.timeBar; }    ///< of the time bar

    /// A copy of the state of browsing.
    mor::ImageIterator GetImageIterator() const override { return m_iterator; }
    /// Takes range, step, name template and speed from another state, and goes back by whole steps to the range's
    /// start; paints at once if that moves.
    /// @throws kep::InternalException from the setters, in the order range, step, template, speed
    void UpdateImageIterator(const mor::ImageIterator& other) override;
    /// One step forward by hand, painted at once. @return whether another frame is shown
    bool ShowNextImage() override;
    /// Shows a frame by its number, held in the range of browsing, and paints it at once. @return whether it is another
    bool GoToFrame(int frame);
    /// Runs one command of the Sequence menu; any other does nothing.
    /// @param event    of the menu, with the id of the command
    /// @param message  gets a text for the status line, "No change." if the command failed
    void OnSequenceMenuHandler(wxCommandEvent& event, wxString& message);
    /// @{
    /// Whether the entry of the Sequence menu has its mark.
    bool OnSequenceMenuUpdateUI_Loop() const { return m_iterator.loopMode; }
    bool OnSequenceMenuUpdateUI_Oscillation() const { return m_iterator.oscillationMode; }
    bool OnSequenceMenuUpdateUI_PlayingForward() const;
    bool OnSequenceMenuUpdateUI_PlayingBackward() const;
    /// @}
    /// A tick of automatic browsing: one frame on, or the end.
    void OnSequenceTimerHandler(wxTimerEvent& event);
    /// Milliseconds between two ticks, as the timer was last started.
    int GetSequenceInterval() const { return m_sequenceTimer.GetInterval(); }

    /// To be called before the mapper is deleted: browsing stops, and nothing is drawn any more. The canvas then has no
    /// image either, which may go from here on unless the canvas owns it.
    void DetachMapper();
    bool IsMapperDetached() const override { return m_mapperDetached; }

    /// Shows the present frame in the volume window, which comes to the front with a new view. It is made at the first
    /// call; without OpenGL there is none, and the log says why.
    void ShowVolVis(const wxIconBundle& icons);
    void RefreshVolVisIcon(const wxIconBundle& icons); ///< if there is a volume window
    /// Null before the first ShowVolVis, and after the window was destroyed. Closing only hides it.
    vol3D_VolVisFrame* GetVolVisFrame() const { return m_volVisFrame; }

    /// The info window, shown or not; null before it was first shown, and after it was closed.
    wxFrame* InfoFrame_Get() const { return m_infoFrame.get(); }
    bool InfoFrame_IsShown() const; ///< whether it is on view
    /// Puts the info window, if it is shown, at the lower right corner of the XY window; at that of XZ or YZ if that is
    /// the only one shown.
    void InfoFrame_Move();

    const MicronBox& GetBoundingBox() const { return m_view.boundingBox; } ///< microns; the whole image
    const MicronBox& GetVisibleBox() const { return m_view.visibleBox; }   ///< microns; what the windows show
    const kep::Vector3d<float>& GetScale() const { return m_view.scale; }  ///< pixels per micron, with zoom
    /// Pixels per micron at zoom 0.
    const kep::Vector3d<float>& GetBaseScale() const { return m_view.options.baseScale; }
    const kep::Vector3d<float>& GetCut() const { return m_view.options.cut; } ///< microns
    const kep::Vector3d<float>& GetCutStep() const { return m_view.cutStep; } ///< microns; one voxel
    /// A step of scrolling: a fifth of what is visible, microns.
    const kep::Vector3d<float>& GetScrollStep() const { return m_view.scrollStep; }
    /// Both frame lines of a drawing window together, as measured.
    int GetBorder() const { return m_border; }
    /// The window of zel_PT_XY, zel_PT_XZ or zel_PT_YZ; null for any other value.
    zel_DrWin3d* GetDrWin(zel_ProjectionType type) const;

    /// Tells of a new position.
    void OnInternalIdle() override;

protected:
    /// The image is not to be touched any more.
    virtual void OnMapperDetached() {}
    /// Arranges the windows and computes scale and visible box.
    void RecomputeVisible();
    void CenterViewIfOut() { m_view.CentreOnCutIfOut(); } ///< centres the windows on the cut if it is out of sight
    /// What follows every change of the view's size: new layout, notification, info window.
    void OnViewChange() { Apply({ViewChange::Kind::Layout, zel_PT_ALL}); }
    /// Paints at once what a Refresh has left open. A hidden canvas renders its shown windows into their backing
    /// bitmaps, so that saving finds the present picture there too.
    void RepaintNow();
    /// Repaints, and sees to it that the backing bitmaps of all windows that are shown have their present pictures:
    /// also where no paint comes, as in a frame that is iconized.
    void RenderNow();

    bool IsVolVisShown() const; ///< the volume window is on the screen
    /// Shows a message box once the present event is handled; while one is open, further ones are dropped.
    void ReportVolumeError(const wxString& text);
    /// For InfoFrame_Create: makes the info window. @param withOverlay  with a row for the label
    void InfoFrame_Make(bool withOverlay);
    /// The info window is shown with its first page.
    bool InfoFrame_IsPixelPageShown() const;
    /// Writes values, and fits the window to them if one has changed. There is an info window.
    void InfoFrame_Write(const std::vector<zel_InfoText>& values);
    void InfoFrame_WriteColour(const wxColour& colour); ///< the colour under the pointer, and a field of it

    View m_view;                         ///< what the drawing windows look at
    long long m_time = 0;                ///< equals the iterator's current index after every change of time
    mor::ImageIterator m_iterator{0, 0}; ///< of browsing
    zel_SequenceTimer m_sequenceTimer;   ///< ticks while browsing goes on by itself

private:
    /// Where a viewer is.
    struct Position {
        kep::Vector3d<float> cut;
        MicronBox visibleBox;
        kep::Vector3d<float> scale;
        int time = 0;
    };

    void TellPosition();
    void OnSize(wxSizeEvent& event);
    void OnPaint(wxPaintEvent& event);
    void OnWindowPaint(wxPaintEvent& event);
    void RefreshUnpainted();
    void RenderWindows();
    void ShowWindows();
    std::optional<wxString> RunSequenceCommand(int id);
    std::optional<wxString> AskForRange();
    std::optional<wxString> ChangeFPS(int fps);
    std::optional<wxString> ChangeStep(int step);
    void StartBrowsing(int direction);
    void RestartTimer();
    void DeleteVolVisFrame();

    PerPlane<zel_DrWin3d*> m_windows;
    DecorationOptions m_decorations;
    zel_TruePictures m_truePictures;
    Position m_toldPosition; // none at first, so that the opening is told
    int m_border = 0;
    bool m_keyboardWaits = false;               // the keyboard was in a window when the last one was hidden
    wxWeakRef<wxFrame> m_infoFrame;             // a child of this canvas; the user may close it
    wxWeakRef<vol3D_VolVisFrame> m_volVisFrame; // this canvas's, though a window of its own on the screen
    bool m_volumeErrorIsTold = false;
    bool m_mapperDetached = false;
    int m_unpainted = 0; // windows that were shown when the canvas was painted, and were not painted since
};

} // namespace zel
