#include "Ratios.h"

#include <QCoreApplication>
#include <QFile>
#include <algorithm>
#include <chrono>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

struct Row {
    QString name;
    double ours, bare, ratio, limit;
};
std::vector<Row> rows;

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

double seconds(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Ratios::measure(const QString& name, int rounds, double limit, const std::function<double()>& ours,
                     const std::function<double()>& bare) {
    std::vector<double> a, b, ratio;
    ours();
    bare();
    for (int round = 0; round < rounds; ++round) {
        // The order changes from round to round, so that neither always finds what the other left in memory.
        double x = 0, y = 0;
        if (round % 2) {
            y = bare();
            x = ours();
        } else {
            x = ours();
            y = bare();
        }
        a.push_back(x);
        b.push_back(y);
        ratio.push_back(x / y);
    }
    rows.push_back({name, median(a), median(b), median(ratio), limit});
}

void Ratios::note(const QString& name, double ratio, double limit) {
    rows.push_back({name, 0, 0, ratio, limit});
}

void Ratios::report() {
    QFile file(QCoreApplication::applicationDirPath() + u"/ratios.csv"_s);
    const bool fresh = !file.exists();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        std::fprintf(stderr, "ratios.csv cannot be written\n");
    if (fresh)
        file.write("what,ours_ms,bare_ms,ratio,limit\n");
    std::printf("\n%-46s %10s %10s %7s %6s\n", "what", "ours ms", "bare ms", "ratio", "limit");
    for (const Row& row : rows) {
        std::printf("%-46s %10.2f %10.2f %7.2f %6.2f\n", qPrintable(row.name), row.ours * 1000, row.bare * 1000,
                    row.ratio, row.limit);
        file.write(u"%1,%2,%3,%4,%5\n"_s.arg(row.name)
                       .arg(row.ours * 1000, 0, 'f', 2)
                       .arg(row.bare * 1000, 0, 'f', 2)
                       .arg(row.ratio, 0, 'f', 3)
                       .arg(row.limit)
                       .toUtf8());
    }
}
