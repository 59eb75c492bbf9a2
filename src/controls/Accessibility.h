#pragma once

class QStatusBar;
class QString;
class QWidget;

/// What screen readers are told beyond what Qt tells them by itself.
namespace Accessibility {

/// Teaches Qt the links (LinkLabel, which has the role of a link and can be pressed), the dividers and headers that the
/// keyboard goes to, and the widgets that Announce speaks for, and keeps lists from telling of a focus that they do not
/// have. Comes once, before any window.
void Install();

/// Makes the text what a screen reader reads of the widget, and has it spoken: of several texts in one turn of the
/// event loop the last. The widget then has the role of a notification: of a mere change of a status bar or a label no
/// reader speaks.
void Announce(QWidget &widget, const QString &text);

/// Announces every text that the status bar shows from now on.
void AnnounceStatus(QStatusBar &bar);

} // namespace Accessibility
