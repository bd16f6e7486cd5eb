#pragma once

#include "printing/PrintSource.h"

#include <vector>

class DescriptionModel;
class ExplorerModel;

/// What an explorer has to print. @param selectedRows indexes into its rows, in the order of the list
PrintSource sourceOf(const ExplorerModel& explorer, const std::vector<int>& selectedRows);
/// What a window of descriptions has to print.
PrintSource sourceOf(const DescriptionModel& descriptions);
/// What an analysis has to print, a variable as it stands in the catalogue.
PrintSource sourceOfAnalysis(const QString& study, const QString& variable, bool tablePage);
