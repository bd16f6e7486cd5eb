#include "printing/ReportPages.h"
#include "printing/finishPdf.h"
#include "printing/outlets.h"

#include "app/globals.h"
#include "platform/system/wholeFile.h"

#include <QDir>
#include <QGlyphRun>
#include <QPainter>
#include <QPdfWriter>
#include <QRawFont>
#include <QTemporaryFile>
#include <algorithm>
#include <atomic>
#include <future>

using namespace Qt::StringLiterals;

namespace {

constexpr int twipsPerInch = 1440;
constexpr qsizetype longestTitle = 300, blockSize = 16384;
using GoOn = std::function<bool(int, int)>;

/// A text of the catalogue as a line that every reader can show: it may hold breaks, controls and halves of characters.
QString asLine(const QString& text) {
    QString line;
    for (const char32_t c : text.left(longestTitle + 1).toUcs4())
        line += c < 0x20 || (c >= 0x7F && c < 0xA0) || QChar::isSurrogate(c) || (c & 0xFFFE) == 0xFFFE
                    ? u" "_s
                    : QString::fromUcs4(&c, 1);
    line = line.simplified();
    return text.size() > longestTitle ? line + u'…' : line;
}

/// Passes on what is written and remembers the first failure: the PDF writer looks at none.
class Guarded : public QIODevice {
public:
    explicit Guarded(QIODevice& to) : to_(to) { open(WriteOnly | Unbuffered); }
    bool isSequential() const override { return true; }
    const QString& fault() const { return fault_; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* bytes, qint64 size) override {
        if (fault_.isEmpty() && !writeAll(to_, bytes, size))
            fault_ = to_.errorString();
        return fault_.isEmpty() ? size : -1;
    }

private:
    QIODevice& to_;
    QString fault_;
};

/// A font's name as a PDF has it.
QString nameOf(const QRawFont& font) {
    const QString style = font.styleName().remove(u' ');
    const bool plain = style == u"Book" || style == u"Regular" || style == u"Normal" || style.isEmpty();
    return font.familyName().remove(u' ') + (plain ? QString() : u'-' + style);
}

/// The PDF writer doesn't say what such characters are, so that nobody could search or copy them.
void rememberRare(PdfMarks& marks, const ReportPage::Line& line) {
    const QString text = line.text->text();
    if (std::ranges::none_of(text, [](QChar c) { return c.isHighSurrogate(); }) || line.line >= line.text->lineCount())
        return;
    const QTextLine set = line.text->lineAt(line.line);
    for (const QGlyphRun& run : set.glyphRuns()) {
        const QRawFont font = run.rawFont();
        if (!font.isValid())
            continue;
        std::map<quint32, char32_t> characters; // by glyph
        for (const char32_t c : text.mid(set.textStart(), set.textLength()).toUcs4())
            if (QChar::requiresSurrogates(c))
                if (const auto glyphs = font.glyphIndexesForString(QString::fromUcs4(&c, 1)); glyphs.size() == 1)
                    characters.try_emplace(glyphs.front(), c);
        for (const quint32 glyph : run.glyphIndexes())
            if (const auto found = characters.find(glyph); glyph != 0 && found != characters.end())
                if (auto& known = marks.rareCharacters[nameOf(font)];
                    std::ranges::find(known, found->second) == known.end())
                    known.push_back(found->second);
    }
}

void remember(PdfMarks& marks, const ReportPage& page, int index) {
    for (const ReportPage::Piece& piece : page.pieces)
        if (const auto* line = std::get_if<ReportPage::Line>(&piece))
            rememberRare(marks, *line);
    for (const ReportPage::Link& link : page.links)
        marks.links.push_back({index, link.rect, link.entry});
    for (const ReportPage::Anchor& anchor : page.anchors)
        if (PdfMarks::Place& place = marks.places.at(static_cast<size_t>(anchor.entry)); place.page < 0)
            place = {index, anchor.y};
}

PdfMarks marksOf(const ReportPages& report) {
    PdfMarks marks;
    marks.page = report.setup.page;
    marks.language = report.setup.language == 2 ? u"en"_s : u"de"_s;
    for (int i = 0; i < report.count; ++i)
        marks.numbers.push_back(report.numberOf(i));
    marks.places.resize(report.outline.entries.size());
    for (size_t i = 0; i < report.outline.entries.size(); ++i) {
        const ReportEntry& entry = report.outline.entries[i];
        const bool variable = entry.kind == ReportEntry::Kind::Variable;
        QString title = asLine(variable ? entry.name + u"  "_s + entry.title : entry.title);
        if (!title.isEmpty())
            marks.bookmarks.push_back({static_cast<int>(i), entry.level, std::move(title)});
    }
    return marks;
}

/// @return whether all pages were painted
bool paint(const ReportPages& report, Guarded& to, PdfMarks& marks, const GoOn& goOn) {
    QPdfWriter writer(&to);
    writer.setPdfVersion(QPagedPaintDevice::PdfVersion_A1b);
    writer.setResolution(twipsPerInch);
    writer.setTitle(asLine(report.outline.title));
    writer.setCreator(u"Varidex"_s);
    writer.setPageLayout(
        QPageLayout(QPageSize(report.setup.page / twipsPerPoint, QPageSize::Point, {}, QPageSize::ExactMatch),
                    QPageLayout::Portrait, {}));
    marks.drawnHeight = writer.pageLayout().fullRectPoints().height();
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    for (int i = 0; i < report.count; ++i) {
        if (i > 0 && !writer.newPage())
            return false;
        const ReportPage page = report.page(i);
        painter.save();
        paintPage(painter, page);
        painter.restore();
        remember(marks, page, i);
        if (!to.fault().isEmpty() || !goOn(i + 1, report.count))
            return false;
    }
    return painter.end() && to.fault().isEmpty();
}

/// Finishes a file beside the events of the program: in a long one every object is looked at.
Outcome finish(QIODevice& written, const PdfMarks& marks, QIODevice& to, const std::function<bool()>& goOn) {
    std::atomic<bool> stopped = false;
    QString fault;
    QByteArray pending; // it comes word by word
    const auto writePending = [&] {
        if (stopped)
            throw std::runtime_error("stopped");
        if (!writeAll(to, pending.constData(), pending.size())) {
            fault = to.errorString();
            throw std::runtime_error("not written");
        }
        pending.truncate(0);
    };
    const auto write = [&](const unsigned char* bytes, size_t size) {
        pending.append(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
        if (pending.size() >= blockSize)
            writePending();
    };
    auto work = std::async(std::launch::async, [&] {
        try {
            finishPdf(written, marks, write);
            writePending();
            return true;
        } catch (const std::exception& error) {
            if (fault.isEmpty())
                fault = QString::fromUtf8(error.what());
            return false;
        }
    });
    while (work.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready)
        stopped = stopped || !goOn();
    const bool done = work.get() && !stopped;
    return {done, stopped ? QString() : fault};
}

} // namespace

ReportPages ReportPages::of(const ReportLayout& layout) {
    return {layout.outline(), layout.setup(), layout.complete() ? layout.pageCount() : 0,
            [&layout](int index) { return layout.page(index); },
            [&layout](int index) { return layout.numberOf(index); }};
}

Outcome writePdf(const ReportPages& report, QIODevice& to, const GoOn& goOn) {
    if (report.count < 1)
        return {false, TranslateText(u"Der Bericht hat keine Seiten."_s)};
    const auto noDraft = [](const QString& why) {
        return Outcome{false, TranslateText(u"Die Zwischendatei konnte nicht geschrieben werden: %1"_s).arg(why)};
    };
    // Nobody asks for its name, so where the system can it has none, and nothing stays behind whatever happens.
    QTemporaryFile draft(QDir(QDir::tempPath()).filePath(u"report-XXXXXX.pdf"_s));
    if (!draft.open())
        return noDraft(draft.errorString());
    PdfMarks marks = marksOf(report);
    Guarded guarded(draft);
    const bool painted = paint(report, guarded, marks, goOn);
    if (!guarded.fault().isEmpty())
        return noDraft(guarded.fault());
    if (!painted)
        return {};
    if (!flushAll(draft))
        return noDraft(draft.errorString());
    const Outcome outcome = finish(draft, marks, to, [&] { return goOn(report.count, report.count); });
    return outcome;
}

QString savePdf(const ReportLayout& layout, const QString& path, const PageProgress& progress) {
    Outcome outcome;
    const QString fault = saveWhole(path, [&](QIODevice& file) {
        outcome = writePdf(
            ReportPages::of(layout), file, progress ? progress : [](int, int) { return true; });
        return outcome.done;
    });
    return fault.isEmpty() ? outcome.fault : fault;
}
