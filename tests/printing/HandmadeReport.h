#pragma once

#include "printing/ReportRun.h"

#include <functional>
#include <memory>

/// A report of variables "V1", "V2" ... with the labels "Label 1" ..., each on a page of its own, of which every
/// reading brings one more.
class HandmadeReport : public ReportContent {
public:
    struct Script {
        int variables = 5;
        QString why = QString();   ///< there is nothing to report
        int failsAfter = -1;       ///< entries after which reading fails; -1: never
        QString name = QString();  ///< of the last variable, if it is not to be the usual one
        QString label = QString(); ///< the same for its label
    };

    explicit HandmadeReport(const Script& script) : script_(script) {}

    static std::unique_ptr<ReportRun> run(const Script& script, const ReportRequest& request = asked()) {
        return std::make_unique<ReportRun>(request, std::make_unique<HandmadeReport>(script));
    }
    /// A4, upright.
    static ReportRequest asked() {
        ReportRequest request;
        request.MarginTop = request.MarginBottom = request.MarginLeft = request.MarginRight = 20;
        request.LANGUAGE = 1;
        request.ReportFontSize = 11;
        request.Orientation = 1;
        request.PaperSize = 9;
        request.PageNumberLocation = request.DateLocation = 7;
        request.TableFontName = QStringLiteral("Arial");
        request.PicZoom = 0.6;
        request.TableZoom = request.GraphZoom = 1;
        return request;
    }

    QString open() override {
        outline_.title = QStringLiteral("Handgemacht");
        for (int i = 1; i <= script_.variables; ++i)
            outline_.entries.push_back({ReportEntry::Kind::Variable, 0, QStringLiteral("V%1").arg(i),
                                        QStringLiteral("Label %1").arg(i), true});
        if (!script_.name.isEmpty())
            outline_.entries.back().name = script_.name;
        if (!script_.label.isEmpty())
            outline_.entries.back().title = script_.label;
        return script_.why;
    }
    const ReportOutline& outline() const override { return outline_; }
    bool read(int) override {
        if (ready_ == script_.failsAfter)
            fault_ = QStringLiteral("Die Datenbank ist fort.");
        else
            ready_ += ready_ < script_.variables;
        return fault_.isEmpty() && ready_ < script_.variables;
    }
    QString fault() const override { return fault_; }
    int ready() const override { return ready_; }
    std::vector<Block> blocks(int entry) const override {
        TextBlock heading;
        heading.style = TextBlock::Style::Entry;
        heading.name = outline_.entries[static_cast<size_t>(entry)].name;
        heading.runs = {{outline_.entries[static_cast<size_t>(entry)].title, false, false}};
        TextBlock question;
        question.style = TextBlock::Style::Question;
        question.runs = {{QStringLiteral("Wie ist es?"), false, false}};
        return {heading, question};
    }

private:
    Script script_;
    ReportOutline outline_;
    int ready_ = 0;
    QString fault_;
};
