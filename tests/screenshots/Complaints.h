#pragma once

#include <QStringList>

class QWidget;

/// What is wrong with how a window looks now, a line each: the widget's name, its text and what is wrong. Hidden pages
/// of the window do not count.
///
/// - it shows no text at all;
/// - a text is missing, clipped, out of sight, or reaches out of the widget around it;
/// - a text ends in dots though there is room, or without a tool tip that shows the whole of it; what a line edit or a
///   view cuts off may be scrolled to;
/// - a scroll area scrolls sideways though the screen has room;
/// - two widgets side by side overlap;
/// - a text has less than the least contrast with its ground (WCAG 2.1, success criterion 1.4.3). Placeholders count,
///   the texts of disabled controls do not, as there.
///
/// What the list of exceptions in the source names is left out, for the reason that stands there.
QStringList complaintsAbout(QWidget& window);
