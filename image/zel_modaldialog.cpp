#include "image/zel_modaldialog.h"

#include <wx/evtloop.h>

#ifdef __WXGTK__
#include <dlfcn.h>
#endif

namespace zel {

namespace {

/// Ends a dialog that the system runs in a loop of its own, such as a message box: the toolkit has no call for that.
void EndNative(const wxDialog& dialog) {
#ifdef __WXGTK__
    using Respond = void (*)(void* dialog, int response);
    constexpr int cancel = -6; // GTK_RESPONSE_CANCEL
    if (const auto respond = reinterpret_cast<Respond>(dlsym(RTLD_DEFAULT, "gtk_dialog_response")))
        respond(dialog.GetHandle(), cancel);
#else
    wxUnusedVar(dialog);
#endif
}

/// One run of a dialog, and the windows above it.
class ModalRun : public wxEvtHandler {
public:
    explicit ModalRun(wxDialog& dialog) : m_dialog(dialog), m_outerLoop(wxEventLoopBase::GetActive()) {
        for (wxWindow* above = dialog.GetParent(); above != nullptr; above = above->GetParent())
            above->Bind(wxEVT_DESTROY, &ModalRun::OnDestroy, this); // unbound by the toolkit when either of them goes
    }

    int Run() {
        CallAfter(&ModalRun::OnBegin);
        const int code = m_dialog.ShowModal();
        return m_parentGone ? int{wxID_CANCEL} : code;
    }

private:
    void OnBegin() {
        m_loop = wxEventLoopBase::GetActive();
        m_begun = true;
        if (m_parentGone)
            End();
    }

    void OnDestroy(wxWindowDestroyEvent& event) {
        event.Skip();
        if (m_parentGone || !IsAbove(event.GetWindow()))
            return; // the event of a child comes to its parents, too
        m_parentGone = true;
        m_dialog.GetParent()->RemoveChild(&m_dialog); // or it would be deleted with it
        if (m_begun)
            End();
    }

    bool IsAbove(const wxWindow* window) const {
        for (const wxWindow* above = m_dialog.GetParent(); above != nullptr; above = above->GetParent())
            if (above == window)
                return true;
        return false;
    }

    void End() {
        const wxEventLoopBase* const active = wxEventLoopBase::GetActive();
        if (!m_dialog.IsModal()) {
            if (active == m_outerLoop)
                EndNative(m_dialog);
        } else if (active == m_loop) {
            m_dialog.EndModal(wxID_CANCEL);
        } else if (!m_waits) {
            // Another dialog runs over this one. To end this one now would hide it and leave its loop running for ever.
            m_waits = true;
            m_dialog.Bind(wxEVT_IDLE, &ModalRun::OnIdle, this);
        }
    }

    void OnIdle(wxIdleEvent& event) {
        event.Skip();
        if (m_dialog.IsModal() && wxEventLoopBase::GetActive() == m_loop)
            m_dialog.EndModal(wxID_CANCEL);
    }

    wxDialog& m_dialog;
    const wxEventLoopBase* m_outerLoop;
    const wxEventLoopBase* m_loop = nullptr; // of this run; that around it if the system runs the dialog
    bool m_begun = false;
    bool m_parentGone = false;
    bool m_waits = false;
};

} // namespace

int RunModal(wxDialog& dialog) {
    return ModalRun(dialog).Run();
}

void ShowMessage(const wxString& text, const wxString& caption, long style, wxWindow* parent) {
    wxMessageDialog box(parent, text, caption, (style & wxICON_MASK) != 0 ? style : style | wxICON_INFORMATION);
    RunModal(box);
}

} // namespace zel
