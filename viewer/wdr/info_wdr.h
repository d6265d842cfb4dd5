#pragma once

class wxFrame;
class wxWindow;

namespace zel {

/// Lays out a page.
using InfoPageFunc = void (*)(wxWindow* page);

/// The page "Pixel info".
void MouseInfoFunc(wxWindow* page);
/// The same with a row for the label.
void MouseOverlayInfoFunc(wxWindow* page);
/// The page "Image info".
void ImageInfoFunc(wxWindow* page);
/// The page "View info".
void ViewInfoFunc(wxWindow* page);

/// Fills the info window with its notebook of three pages, and fits it.
/// @param mouseInfo  lays out the first page
void InfoNotebookFunc(wxFrame* window, InfoPageFunc mouseInfo);

} // namespace zel
