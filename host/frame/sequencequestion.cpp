#include "host/frame/sequencequestion.h"

#include "host/fileselection.h"
#include "host/opening.h"
#include "image/zel_modaldialog.h"

#include <wx/msgdlg.h>

namespace zelviewer {

std::vector<std::string> AskForSequence(wxWindow* parent, const std::vector<std::string>& files) {
    std::vector<std::string> sequence = SequenceToOffer(files);
    if (sequence.empty())
        return files;
    wxMessageDialog question(parent, wxString::FromUTF8(SequenceQuestion(sequence.size())), "zelviewer",
                             wxYES_NO | wxCANCEL | wxICON_QUESTION);
    question.SetYesNoCancelLabels("&Sequence", "This &file only", wxID_CANCEL);
    switch (zel::RunModal(question)) {
    case wxID_YES:
        return sequence;
    case wxID_NO:
        return files;
    default:
        throw Cancelled(files.front() + ": Opening was cancelled.");
    }
}

} // namespace zelviewer
