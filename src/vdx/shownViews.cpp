#include "vdx/shownViews.h"

#include "analysis/result/titles.h"
#include "app/globals.h"
#include "config/Options.h"

using namespace Qt::StringLiterals;

QString showCrosstabView(TableResult& result, int view) {
    static const std::array<QString, 4> words{QString(), u"Spaltenprozente"_s, u"Zeilenprozente"_s,
                                              u"Gesamtprozente"_s};
    AnalysisRequest shown = result.request;
    shown.cbValues = view;
    result.showView(view);
    const QString title = resultTitle(shown, result.mfgGrid, gOptions);
    return view == 0 ? title : title + u", "_s + TranslateText(words[static_cast<size_t>(view)]);
}
