#pragma once

#include <QString>

/// What a window has to print: its selection as data, taken when the command is given.
struct PrintSource {
    enum class Window { None, Explorer, Document, Analysis };
    Window window = Window::None;
    QString database = {};             ///< full path of the open catalogue
    int language = 1;                  ///< of the words: 1 German, 2 English
    int view = 0;                      ///< number of the view; 0 the catalogue itself
    bool isStudy = false;              ///< the view is a study view
    QString viewName = {};             ///< in the language of the words
    QString sourceTable = {};          ///< suffix of the view's tables
    QString study = {}, variable = {}; ///< of the row selected first, or of the analysis; empty without one
    QString nodeId = {},
            nodeText = {}; ///< of the selected node or the shown description; empty for none and for the root
    QString rowNodeId = {},
            rowNodeText = {}; ///< of the node that the row stands at, which the filter may have found elsewhere
    bool fixedFont = false;   ///< the window shows text in the fixed font
    bool tablePage = false;   ///< of an analysis: its table page is in front

    bool operator==(const PrintSource&) const = default;
};
