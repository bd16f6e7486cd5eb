#include "platform/dao/Journals.h"

#include "platform/dao/EngineSettings.h"
#include "platform/dao/Error.h"
#include "platform/dao/RawFile.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>
#include <QtEndian>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

const QString journalSuffix = u"-journal"_s;

/// A file that holds content itself, opened for as long as this lives. Links, pipes and the like do not open.
class PlainFile {
public:
    PlainFile(const QString& path, int access)
        : descriptor_(::open(QFile::encodeName(path).constData(), access | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)) {
        struct stat found {};
        if (descriptor_ >= 0 && fstat(descriptor_, &found) == 0 && S_ISREG(found.st_mode)) {
            size_ = found.st_size;
        }
    }
    ~PlainFile() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    qint64 size() const { return size_; } ///< -1 when it is not open
    /// Empty when it has not that many bytes there.
    QByteArray read(qint64 size, qint64 offset) const {
        if (size <= 0 || offset < 0 || offset + size > size_) {
            return {};
        }
        QByteArray bytes(size, '\0');
        return pread(descriptor_, bytes.data(), static_cast<size_t>(size), offset) == size ? bytes : QByteArray();
    }
    bool cut(qint64 size) const { return ftruncate(descriptor_, size) == 0 && fsync(descriptor_) == 0; }

private:
    int descriptor_;
    qint64 size_ = -1;
};

/// What the end of a journal says of its super-journal: a page number that no page has, the name, its length and sum of
/// bytes, and the mark with which the journal begins too; numbers have the highest byte first.
struct SuperRecord {
    QByteArray name;
    qint64 begin = 0; ///< of the record in the journal
};

/// @param size  of what is looked at of the journal
std::optional<SuperRecord> recordOf(const PlainFile& journal, qint64 size) {
    constexpr qint64 tail = 16, pageNumber = 4, longest = 4096;
    const QByteArray mark = QByteArray::fromHex("d9d505f920a163d7");
    const QByteArray end = journal.read(tail, size - tail);
    if (!end.endsWith(mark)) {
        return std::nullopt;
    }
    const qint64 length = qFromBigEndian<quint32>(end.constData());
    auto sum = qFromBigEndian<quint32>(end.constData() + 4);
    const QByteArray name = length <= longest ? journal.read(length, size - tail - length) : QByteArray();
    for (const char byte : name) {
        sum -= static_cast<quint32>(byte);
    }
    if (name.isEmpty() || sum != 0) {
        return std::nullopt;
    }
    return SuperRecord{name, qMax(0, size - tail - length - pageNumber)};
}

std::optional<SuperRecord> recordOf(const QString& journal) {
    const PlainFile file(journal, O_RDONLY);
    return recordOf(file, file.size());
}

QString folderOf(const QString& path) {
    return QFileInfo(path).path();
}

QString nameOf(const QString& path) {
    return QFileInfo(path).fileName();
}

/// Name of the main file that a super-journal is named after; empty for what is not the name of one.
QString mainFileOf(const QString& superJournal) {
    static const QRegularExpression form(u"^([^/]+)-mj[0-9A-F]{6}9[0-9A-F]{2}$"_s);
    return form.match(nameOf(superJournal)).captured(1);
}

[[noreturn]] void refuse(const QString& file, const QString& reason) {
    constexpr int cannotOpen = 3049;
    raiseEngineErrorInWords(cannotOpen, u"Cannot open database '%1'.  %2"_s.arg(file, reason));
}

void requireSuperJournalName(const QString& file, const QByteArray& name) {
    const QString path = QFile::decodeName(name);
    if (mainFileOf(path).isEmpty() || !QDir::isAbsolutePath(path) || name.contains('\0')) {
        refuse(file, u"Its journal names the file '%1', which no change of a database can have made."_s.arg(path));
    }
}

void requireOneRecord(const QString& file, const SuperRecord& record) {
    if (const auto another = recordOf(PlainFile(file + journalSuffix, O_RDONLY), record.begin)) {
        refuse(file,
               u"Its journal names the file '%1' and another one, which no change of a database can have made."_s.arg(
                   QFile::decodeName(another->name)));
    }
}

/// The companions by which SQLite would open any other file, or wait for a pipe for good.
void requirePlainCompanions(const QString& file) {
    for (const QString& companion : {file + journalSuffix, file + u"-wal"_s, file + u"-shm"_s}) {
        struct stat found {};
        if (lstat(QFile::encodeName(companion).constData(), &found) == 0 && !S_ISREG(found.st_mode)) {
            refuse(file, u"'%1' beside it is no file of its own and can't be its journal."_s.arg(companion));
        }
    }
}

enum class Lock { Taken, Writing, Refused };

/// The lock under which unfinished work is taken back.
Lock lockAll(RawFile& file) {
    constexpr unsigned long pause = 20;
    const QDeadlineTimer end(engineSettings().lockWait);
    while (file.isOpen()) {
        if (file.isBeingWritten()) {
            return Lock::Writing;
        }
        if (file.lockAll()) {
            return Lock::Taken;
        }
        if (end.hasExpired()) {
            break;
        }
        QThread::msleep(pause);
    }
    return Lock::Refused;
}

/// Takes the name of the super-journal off a journal, whose file must be locked.
bool standAlone(const QString& journal, const QByteArray& superJournal) {
    const PlainFile file(journal, O_RDWR);
    const std::optional<SuperRecord> record = recordOf(file, file.size());
    return !record || record->name != superJournal || file.cut(record->begin);
}

/// Journals that a super-journal lists; none for a file that is no such list.
QStringList journalsIn(const QString& superJournal) {
    constexpr qint64 longest = 1 << 20;
    const PlainFile file(superJournal, O_RDONLY);
    const QByteArray content = file.size() <= longest ? file.read(file.size(), 0) : QByteArray();
    if (!content.endsWith('\0')) {
        return {};
    }
    QStringList journals;
    for (const QByteArray& name : content.chopped(1).split('\0')) {
        journals << QFile::decodeName(name);
        if (!QDir::isAbsolutePath(journals.last()) || !journals.last().endsWith(journalSuffix)) {
            return {};
        }
    }
    return journals;
}

/// Deals with one journal of a list.
/// @param known   how the journals name the super-journal
/// @return false when the journal still needs the super-journal, or may
bool settleListed(const QString& listed, const QString& superJournal, const QByteArray& known) {
    const QString relative = QDir(folderOf(QFile::decodeName(known))).relativeFilePath(listed);
    const QString journal = QDir::cleanPath(QDir(folderOf(superJournal)).filePath(relative));
    const QString database = journal.chopped(journalSuffix.size());
    if (!QFileInfo::exists(database)) {
        // The main file's folder was moved and this one's not, or it can't be reached now. Whoever opens it, does it.
        const std::optional<SuperRecord> record = recordOf(listed);
        return QFileInfo::exists(listed.chopped(journalSuffix.size())) && (!record || record->name != known);
    }
    const std::optional<SuperRecord> record = recordOf(journal);
    if (!record || record->name != known) {
        return true;
    }
    RawFile file(database, RawFile::Access::ReadWrite);
    return lockAll(file) == Lock::Taken && standAlone(journal, known);
}

void settleAll(const QStringList& journals, const QString& superJournal, const QByteArray& known) {
    bool settled = !journals.isEmpty();
    for (const QString& journal : journals) {
        settled = settleListed(journal, superJournal, known) && settled;
    }
    if (settled) {
        QFile::remove(superJournal);
    }
}

bool isThere(const QString& path) {
    struct stat found {};
    return lstat(QFile::encodeName(path).constData(), &found) == 0;
}

/// The super-journal where it lies now, empty if it was removed by the commit. @throws Error 3049 when nothing tells
QString findSuperJournal(const QString& file, const Surroundings& around, const QString& known) {
    QStringList folders{folderOf(file), around.mainFolder, folderOf(known)};
    folders.removeAll(QString());
    const QString mainFile = mainFileOf(known);
    const auto hasMainFile = [&](const QString& folder) { return QFileInfo(folder + u'/' + mainFile).isFile(); };
    for (const QString& folder : std::as_const(folders)) {
        const QString place = folder + u'/' + nameOf(known);
        if (isThere(place)) {
            return place;
        }
    }
    if (std::none_of(folders.begin(), folders.end(), hasMainFile)) {
        refuse(file,
               u"It was being changed together with '%1', which does not lie here, so that nothing tells whether "
               u"the change was completed.  Open that one and reach this one from there, or give the catalogue its "
               u"former name back."_s.arg(mainFile));
    }
    // Taking the change back settles every journal before it removes the super-journal; but not the copies of one.
    if (!around.isOriginal && !hasMainFile(folderOf(file))) {
        refuse(file,
               u"It was being changed together with '%1'.  That change has ended meanwhile, and since this file may be "
               u"a copy, nothing tells whether it was completed.  Use the original, or delete this one and import its "
               u"study again."_s.arg(mainFile));
    }
    return {};
}

/// Under the lock: takes the super-journal that is there off all its journals, or removes the journal of a change that
/// was completed. @throws Error 3049, 3043
void settle(const QString& file, const Surroundings& around, const SuperRecord& record) {
    const QString journal = file + journalSuffix;
    requireOneRecord(file, record);
    const QString superJournal = findSuperJournal(file, around, QFile::decodeName(record.name));
    if (superJournal.isEmpty() ? !QFile::remove(journal) : !standAlone(journal, record.name)) {
        raiseEngineError(3043);
    }
    if (superJournal.isEmpty()) {
        return;
    }
    const QStringList listed = journalsIn(superJournal);
    const bool isOurs = std::any_of(listed.begin(), listed.end(),
                                    [&](const QString& other) { return nameOf(other) == nameOf(journal); });
    // Where it lay when it was written there may be another archive by now.
    if (isOurs && (folderOf(superJournal) == folderOf(file) || folderOf(superJournal) == around.mainFolder)) {
        settleAll(listed, superJournal, record.name);
    }
}

} // namespace

void settleJournals(const DatabaseLocation& location, const Surroundings& around) {
    const QString& file = location.identity; // the companions of a linked file lie beside its target
    const QString journal = file + journalSuffix;
    requirePlainCompanions(file);
    while (const std::optional<SuperRecord> found = recordOf(journal)) {
        requireSuperJournalName(file, found->name);
        RawFile content(file, RawFile::Access::ReadWrite);
        if (!content.isOpen() || !location.writable) {
            constexpr int noPermission = 3051;
            raiseEngineErrorInWords(noPermission,
                                    u"Cannot open database '%1'.  A change of it was interrupted, and that can only be "
                                    u"settled where the file and its folder may be written."_s.arg(file));
        }
        const Lock lock = lockAll(content);
        if (lock == Lock::Refused) {
            raiseEngineError(3050, file);
        }
        if (lock == Lock::Writing) {
            return;
        }
        // By now another may have settled it.
        if (const std::optional<SuperRecord> record = recordOf(journal); record && record->name == found->name) {
            settle(file, around, *record);
        }
    }
}

void settleSuperJournal(const QString& path) {
    const QString mainFile = mainFileOf(path);
    if (mainFile.isEmpty() || PlainFile(path, O_RDONLY).size() < 0) {
        return;
    }
    const QStringList journals = journalsIn(path);
    if (journals.isEmpty()) {
        QFile::remove(path); // no journal names it before the list is complete
        return;
    }
    const auto own = std::find_if(journals.begin(), journals.end(),
                                  [&](const QString& journal) { return nameOf(journal) == mainFile + journalSuffix; });
    if (own != journals.end()) {
        settleAll(journals, path, QFile::encodeName(folderOf(*own) + u'/' + nameOf(path)));
    }
}

} // namespace dao
