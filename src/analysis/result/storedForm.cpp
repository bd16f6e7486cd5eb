#include "analysis/result/storedForm.h"

using namespace Qt::StringLiterals;

StoredTable storedTableOf(const TableResult& result, int view) {
    const Options& options = result.facts->origin.options;
    StoredTable stored;
    stored.title = result.lblLabel;
    stored.kind = result.mfgGrid.Tag;
    if (stored.kind == TableKind::Crosstab) {
        stored.values = view;
        if (options.IncludeNinXTabPercent)
            stored.nFlag = options.IncludeNinXTabPercentNFirst ? u"NFirst"_s : u"N"_s;
    }
    stored.table = result.mfgGrid;
    stored.weight = result.facts->request.weightVariable();
    return stored;
}
