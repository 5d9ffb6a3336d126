#include "ui/note_pad.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace kelvane {

NotePad::NotePad(QWidget* parent)
    : QGroupBox("Note Pad", parent)
{
    setObjectName("NoteFrame");
    auto* notes = new QPlainTextEdit;
    notes->setObjectName("NoteText");
    notes->setAccessibleName("Note Pad");
    notes->setTabChangesFocus(true);
    notes->setFrameShape(QFrame::NoFrame);
    notes->setMinimumHeight(40);
    notes->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(notes);
}

} // namespace kelvane
