#pragma once

class QWidget;

/// Keeps the wheel from changing the choice of a list that only comes under the pointer: the combo boxes of the window
/// take the wheel while they have a focus that a key or a click gave them, and else pass it on to what is behind them.
/// A focus that Qt gives them, because the page with the focus was left by a click on a tab, does not count.
void keepWheelFromLists(QWidget& window);
