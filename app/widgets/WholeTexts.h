#pragma once

#include <QObject>

/// Shows, as a tool tip, the whole of a text that its place cuts off: of a cell or row of a view, a line edit and the
/// closed box of a combo box. A text that fits, a password, and what has a tool tip of its own get none. Works as an
/// event filter of the application object.
class WholeTextFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;
};
