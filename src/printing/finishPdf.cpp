#include "printing/finishPdf.h"

#include "printing/PageSetup.h"
#include "printing/toUnicode.h"

#include <QIODevice>
#define POINTERHOLDER_TRANSITION 4 // the library's old pointer is not used here
#include <algorithm>
#include <bit>
#include <map>
#include <qpdf/Buffer.hh>
#include <qpdf/InputSource.hh>
#include <qpdf/Pl_Function.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>
#include <stdexcept>

namespace {

using Handle = QPDFObjectHandle;

/// What the library reads from: a file of ours that may have no name. It goes to and fro by a few bytes, so a piece of
/// the file is kept.
class Input : public InputSource {
public:
    explicit Input(QIODevice& device) : device_(device), size_(device.size()) {}

    qpdf_offset_t findAndSkipNextEOL() override {
        const auto isEnd = [](char c) { return c == '\n' || c == '\r'; };
        while (at_ < size_ && !isEnd(here()))
            ++at_;
        const qpdf_offset_t found = at_;
        while (at_ < size_ && isEnd(here()))
            ++at_;
        return found;
    }
    std::string const& getName() const override { return name_; }
    qpdf_offset_t tell() override { return at_; }
    void seek(qpdf_offset_t offset, int whence) override {
        at_ = offset + (whence == SEEK_CUR ? at_ : whence == SEEK_END ? size_ : 0);
    }
    void rewind() override { at_ = 0; }
    size_t read(char* bytes, size_t length) override {
        last_offset = at_;
        size_t done = 0;
        while (done < length && at_ < size_) {
            const char* from = &here();
            const auto run = std::min(length - done, static_cast<size_t>(kept_.constEnd() - from));
            std::copy_n(from, run, bytes + done);
            done += run;
            at_ += static_cast<qpdf_offset_t>(run);
        }
        return done;
    }
    void unreadCh(char) override { --at_; }

private:
    QIODevice& device_;
    const qpdf_offset_t size_;
    qpdf_offset_t at_ = 0, keptFrom_ = 0;
    QByteArray kept_;
    std::string name_ = "report";

    /// The byte at the place that was reached, which is within the file.
    const char& here() {
        if (at_ < keptFrom_ || at_ >= keptFrom_ + kept_.size()) {
            constexpr qint64 piece = 16384;
            keptFrom_ = at_;
            if (!device_.seek(at_) || (kept_ = device_.read(piece)).isEmpty())
                throw std::runtime_error(device_.errorString().toStdString());
        }
        return kept_.constData()[at_ - keptFrom_];
    }
};

class Finisher {
public:
    Finisher(QPDF& pdf, const PdfMarks& marks) : pdf_(pdf), marks_(marks), pages_(pdf.getAllPages()) {
        if (pages_.size() != marks.numbers.size())
            throw std::logic_error("pages are missing");
    }

    void finish() {
        for (Handle& page : pages_)
            page.replaceKey("/MediaBox", box(QRectF(QPointF(), marks_.page)));
        addLinks();
        mendFonts();
        Handle root = pdf_.getRoot();
        root.replaceKey("/Lang", Handle::newString(marks_.language.toStdString()));
        root.replaceKey("/ViewerPreferences", Handle::parse("<< /DisplayDocTitle true >>"));
        root.replaceKey("/PageLabels", labels());
        if (Handle outlines = bookmarks(); !outlines.isNull()) {
            root.replaceKey("/Outlines", outlines);
            root.replaceKey("/PageMode", Handle::newName("/UseOutlines"));
        }
        partPages(root.getKey("/Pages"));
    }

private:
    static Handle number(double points) { return Handle::newReal(points, 2); }
    /// From the lower edge, as the file has it.
    double upwards(double y) const { return marks_.drawnHeight - y / twipsPerPoint; }
    Handle box(const QRectF& rect) const {
        return Handle::newArray({number(rect.left() / twipsPerPoint), number(upwards(rect.bottom())),
                                 number(rect.right() / twipsPerPoint), number(upwards(rect.top()))});
    }
    static bool isThere(const PdfMarks::Place& place) { return place.page >= 0; }
    Handle destination(const PdfMarks::Place& place) const {
        return Handle::newArray({pages_.at(static_cast<size_t>(place.page)), Handle::newName("/XYZ"), number(0),
                                 number(upwards(place.y)), Handle::newNull()});
    }

    void addLinks() {
        for (const PdfMarks::Link& link : marks_.links) {
            const PdfMarks::Place& place = marks_.places.at(static_cast<size_t>(link.place));
            if (!isThere(place))
                continue;
            // Flag 4: it is printed, as all that is part of such a file must be.
            Handle annotation = Handle::parse("<< /Type /Annot /Subtype /Link /Border [ 0 0 0 ] /F 4 >>");
            annotation.replaceKey("/Rect", box(link.rect));
            annotation.replaceKey("/Dest", destination(place));
            Handle& page = pages_.at(static_cast<size_t>(link.page));
            if (!page.getKey("/Annots").isArray())
                page.replaceKey("/Annots", Handle::newArray());
            page.getKey("/Annots").appendItem(pdf_.makeIndirectObject(annotation));
        }
    }

    static QByteArray bytesOf(Handle& stream) {
        const auto bytes = stream.getStreamData();
        return {reinterpret_cast<const char*>(bytes->getBuffer()), static_cast<qsizetype>(bytes->getSize())};
    }

    /// Number of a font's glyphs; 0 where it does not say.
    static int glyphsOf(Handle& font) {
        Handle of = font.getKey("/DescendantFonts");
        Handle set = of.isArray() && of.getArrayNItems() > 0
                         ? of.getArrayItem(0).getKey("/FontDescriptor").getKey("/CIDSet")
                         : Handle::newNull();
        int glyphs = 0;
        if (set.isStream())
            for (const char bits : bytesOf(set))
                glyphs += std::popcount(static_cast<unsigned char>(bits));
        return glyphs;
    }

    PlainFont plain(Handle& font, Handle& table) const {
        Handle name = font.getKey("/BaseFont");
        const auto rare =
            marks_.rareCharacters.find(name.isName() ? QString::fromStdString(name.getName()).mid(1) : QString());
        return rare == marks_.rareCharacters.end() ? plainFont(bytesOf(table))
                                                   : plainFont(bytesOf(table), glyphsOf(font), rare->second);
    }

    void mendFonts() {
        std::map<QPDFObjGen, QMap<QByteArray, QByteArray>> splits; // of each font that was seen
        for (Handle& page : pages_) {
            QMap<QByteArray, QMap<QByteArray, QByteArray>> ofPage;
            for (auto& [name, font] : page.getKey("/Resources").getKey("/Font").getDictAsMap()) {
                const auto [seen, isNew] = splits.try_emplace(font.getObjGen());
                if (Handle table = font.getKey("/ToUnicode"); isNew && table.isStream()) {
                    const PlainFont letters = plain(font, table);
                    table.replaceStreamData(letters.table.toStdString(), Handle::newNull(), Handle::newNull());
                    seen->second = letters.splits;
                }
                if (!seen->second.isEmpty())
                    ofPage[QByteArray::fromStdString(name).mid(1)] = seen->second;
            }
            if (!ofPage.isEmpty())
                splitLigatures(page, ofPage);
        }
    }

    static void splitLigatures(Handle& page, const QMap<QByteArray, QMap<QByteArray, QByteArray>>& splits) {
        Handle contents = page.getKey("/Contents");
        if (!contents.isStream())
            return;
        const QByteArray before = bytesOf(contents), after = withSplits(before, splits);
        constexpr int lengthInFront = 4; // that Qt's packing adds
        if (after != before)
            contents.replaceStreamData(qCompress(after).mid(lengthInFront).toStdString(),
                                       Handle::newName("/FlateDecode"), Handle::newNull());
    }

    /// The format has arrays of 8,191 at most, and a reader finds a page of a tree sooner.
    void partPages(Handle tree) {
        constexpr size_t mostOfNode = 1000;
        if (pages_.size() <= mostOfNode)
            return;
        Handle nodes = Handle::newArray();
        for (size_t first = 0; first < pages_.size(); first += mostOfNode) {
            const auto begin = pages_.begin() + static_cast<std::ptrdiff_t>(first);
            std::vector<Handle> part(begin,
                                     begin + static_cast<std::ptrdiff_t>(std::min(mostOfNode, pages_.size() - first)));
            Handle node = pdf_.makeIndirectObject(Handle::parse("<< /Type /Pages >>"));
            for (Handle& page : part)
                page.replaceKey("/Parent", node);
            node.replaceKey("/Parent", tree);
            node.replaceKey("/Count", Handle::newInteger(static_cast<long long>(part.size())));
            node.replaceKey("/Kids", Handle::newArray(part));
            nodes.appendItem(node);
        }
        tree.replaceKey("/Kids", nodes);
    }

    /// A tree of numbers: where they go on by one, a page says nothing of its own.
    Handle labels() const {
        Handle list = Handle::newArray();
        for (size_t i = 0; i < marks_.numbers.size(); ++i) {
            const int own = marks_.numbers[i];
            if (i > 0 && own > 1 && own == marks_.numbers[i - 1] + 1)
                continue;
            list.appendItem(Handle::newInteger(static_cast<long long>(i)));
            // The format counts from 1; what lies below is text.
            const std::string text = std::to_string(own);
            list.appendItem(Handle::parse(own > 0 ? "<< /S /D /St " + text + " >>" : "<< /P (" + text + ") >>"));
        }
        Handle tree = Handle::newDictionary();
        tree.replaceKey("/Nums", list);
        return tree;
    }

    /// A bookmark while the tree is built.
    struct Node {
        Handle item;
        int level = -1;
        bool shown = false; ///< what stands below it
        std::vector<Handle> children = {};
        int lines = 0; ///< that stand below it when it is opened
    };

    static void close(std::vector<Node>& open) {
        Node node = std::move(open.back());
        open.pop_back();
        if (!node.children.empty()) {
            node.item.replaceKey("/First", node.children.front());
            node.item.replaceKey("/Last", node.children.back());
            node.item.replaceKey("/Count", Handle::newInteger(node.shown ? node.lines : -node.lines));
        }
        for (size_t i = 0; i + 1 < node.children.size(); ++i) {
            node.children[i].replaceKey("/Next", node.children[i + 1]);
            node.children[i + 1].replaceKey("/Prev", node.children[i]);
        }
        if (!open.empty()) {
            open.back().children.push_back(node.item);
            open.back().lines += 1 + (node.shown ? node.lines : 0);
        }
    }

    /// The tree of all bookmarks; null if there are none.
    Handle bookmarks() const {
        std::vector<Node> open;
        open.push_back({pdf_.makeIndirectObject(Handle::parse("<< /Type /Outlines >>")), -1, true});
        // A long report's variables would push its own chapters out of sight.
        const auto isTop = [](const PdfMarks::Bookmark& mark) { return mark.level <= 0; };
        const bool allShown = marks_.bookmarks.size() <= 50,
                   topShown = std::ranges::count_if(marks_.bookmarks, isTop) <= 1;
        Handle root = open.front().item;
        for (const PdfMarks::Bookmark& mark : marks_.bookmarks) {
            const PdfMarks::Place& place = marks_.places.at(static_cast<size_t>(mark.place));
            if (!isThere(place))
                continue;
            while (open.back().level >= mark.level)
                close(open);
            Handle item = Handle::newDictionary();
            item.replaceKey("/Title", Handle::newUnicodeString(mark.title.toStdString()));
            item.replaceKey("/Dest", destination(place));
            item.replaceKey("/Parent", open.back().item);
            open.push_back(
                {pdf_.makeIndirectObject(item), std::max(0, mark.level), allShown || (topShown && isTop(mark))});
        }
        while (!open.empty())
            close(open);
        return root.hasKey("/First") ? root : Handle::newNull();
    }

    QPDF& pdf_;
    const PdfMarks& marks_;
    std::vector<Handle> pages_;
};

} // namespace

void finishPdf(QIODevice& written, const PdfMarks& marks,
               const std::function<void(const unsigned char*, size_t)>& write) {
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.setAttemptRecovery(false); // we have written it: what can't be read is incomplete
    pdf.processInputSource(std::make_shared<Input>(written));
    Finisher(pdf, marks).finish();

    Pl_Function out("report", nullptr, write);
    QPDFWriter writer(pdf);
    writer.setOutputPipeline(&out);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setObjectStreamMode(qpdf_o_disable);
    writer.write();
}
