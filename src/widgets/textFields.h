#pragma once

#include <QString>

class QWidget;

/// Whether the keyboard types or selects text in a widget: lines, spin boxes, editable lists, texts that are only read,
/// the editor within a list.
bool isTextField(const QWidget* widget);

/// What is selected in a text field; empty for any other widget.
QString selectedText(const QWidget* widget);

/// Keys that mean text to a text field (undo, cut, copy, paste, delete, select all) are its own from now on, in every
/// window: an entry of a menu that has them would take them away, and a field that is only read would let it.
void keepKeysOfTextFields();
