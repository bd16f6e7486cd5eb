#include "analysis/request/DescriptivesChoice.h"

#include "analysis/request/RequestEditor.h"
#include "config/Options.h"

#include <algorithm>

using namespace Qt::StringLiterals;

const std::array<QString, statisticCount>& DescriptivesChoice::captions() {
    static const std::array<QString, statisticCount> texts{
        u"Count"_s,    u"Minimum"_s, u"Maximum"_s, u"Arithmetic Mean"_s, u"Standard Deviation"_s,
        u"Valid N"_s,  u"Range"_s,   u"Sum"_s,     u"Varianz"_s,         u"Schiefe"_s,
        u"Kurtosis"_s, u"Mode"_s,    u"Median"_s,  u"Quartiles"_s};
    return texts;
}

DescriptivesChoice DescriptivesChoice::from(const QString& mask, const QString& digits) {
    DescriptivesChoice choice;
    constexpr double everything = 65535;
    choice.chkDescriptives =
        selectionOf(static_cast<int>(std::clamp(dao::leadingNumber(mask, false), 0.0, everything)));
    const QStringList numbers = digits.split(u';');
    for (size_t i = 0; i < statisticCount; ++i) {
        const QString number = numbers.value(static_cast<qsizetype>(i)).trimmed();
        choice.cmbDigits[i] = number.isEmpty() ? u"0"_s : number;
    }
    return choice;
}

DescriptivesChoice DescriptivesChoice::defaults(const Options& options) {
    return from(QString::number(options.Descriptives), options.DescriptivesDigits);
}

DescriptivesChoice DescriptivesChoice::of(const AnalysisRequest& request, const Options& options) {
    if (request.dtDesc.isEmpty() || request.dtDescDigits.isEmpty())
        return defaults(options);
    return from(request.dtDesc, request.dtDescDigits);
}

QString DescriptivesChoice::dtDesc() const {
    return QString::number(maskOf(chkDescriptives));
}

QString DescriptivesChoice::dtDescDigits() const {
    QString text;
    for (const QString& digits : cmbDigits)
        text += digits + u';';
    return text;
}

void DescriptivesChoice::applyTo(RequestEditor& editor) const {
    editor.change(RequestPart::Statistics, [this](AnalysisRequest& request) {
        request.dtDesc = dtDesc();
        request.dtDescDigits = dtDescDigits();
    });
}

void DescriptivesChoice::applyTo(Options& options) const {
    options.Descriptives = maskOf(chkDescriptives);
    options.DescriptivesDigits = dtDescDigits();
}
