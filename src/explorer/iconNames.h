#pragma once

#include <QString>

/// Name of the drawing behind an icon number of the tree and the lists: "variable", or the kind of view ("study",
/// "category") with "-described" for an entry with a description and "-open" for one that is selected or expanded.
QString iconName(int number);
/// A view's name in the language of the labels.
QString viewName(int view);
