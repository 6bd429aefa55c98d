#pragma once

class QWidget;

/// Makes tool bars known to screen readers by their accessible name, which follows the language, and not by their
/// title.
void nameToolBarsAccessibly();

/// Tells screen readers that the check boxes and radio buttons of the view show and cannot be changed: they have the
/// state, and offer no action. Call before the controls are made, since a screen reader asks at once.
void tellReadOnly(QWidget& view);
