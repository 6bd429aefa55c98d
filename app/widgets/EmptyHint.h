#pragma once

class QAbstractItemView;
class QString;

/// Shows the text in the middle of the view as long as it has no rows, in the font of the widget around the view, and
/// tells it then as the view's accessible description.
/// A later text takes the place of an earlier one. The view keeps the model that it has.
void setEmptyHint(QAbstractItemView& view, const QString& text);
