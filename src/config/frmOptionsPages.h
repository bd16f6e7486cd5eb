#pragma once

class QString;
class QTabWidget;
class QWidget;

/// The tabs of the options dialog with all their controls, in the designed German.
QTabWidget* makeOptionPages(QWidget* parent);
/// Name of the button that browses for a path field.
QString browseButtonOf(const QString& field);
/// Name of the label that says what is wrong with a path field.
QString faultLabelOf(const QString& field);
