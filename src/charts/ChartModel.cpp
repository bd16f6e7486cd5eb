#include "charts/ChartModel.h"

bool ChartModel::isEmpty() const {
    return series.empty() || categories.empty();
}
