#pragma once

#include <QGroupBox>

namespace kelvane {

// The note pad ("NoteFrame"): free text ("NoteText") that belongs to no equation and is not kept.
class NotePad : public QGroupBox {
    Q_OBJECT

public:
    explicit NotePad(QWidget* parent = nullptr);
};

} // namespace kelvane
