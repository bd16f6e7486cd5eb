#include "platform/system/IniFile.h"

#include "platform/system/Paths.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

#define SI_NO_CONVERSION
#include <SimpleIni.h>

using namespace Qt::StringLiterals;

struct IniFile::Content {
    CSimpleIniA ini;
};

namespace {

/// An ini file is typed by people and holds lines; more than this is no ini file.
constexpr qint64 largestFile = 16 * 1024 * 1024;

bool isQuoted(const QString& line) {
    return line.size() >= 2 && line.startsWith(u'"') && line.endsWith(u'"');
}

/// The line that stands for a value. Quotes keep the blanks at its ends; a value holds neither line breaks
/// nor zeros.
QString toLine(const QString& value) {
    QString line = value.section(QChar(0), 0, 0);
    line.replace(u"\r\n"_s, u" "_s).replace(u'\r', u' ').replace(u'\n', u' ');
    const bool blankAtEnd = !line.isEmpty() && (line.front().isSpace() || line.back().isSpace());
    return blankAtEnd || isQuoted(line) ? u'"' + line + u'"' : line;
}

QString fromLine(const QString& line) {
    return isQuoted(line) ? line.mid(1, line.size() - 2) : line;
}

/// UTF-8; a file of an older system is in Latin-1.
QByteArray asUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    return (decoder.hasError() ? QString::fromLatin1(bytes) : text).toUtf8();
}

} // namespace

IniFile::IniFile() : content_(std::make_unique<Content>()) {
    content_->ini.SetUnicode(true);
    content_->ini.SetSpaces(false);
}

IniFile::~IniFile() = default;

bool IniFile::load(const QString& path) {
    content_->ini.Reset();
    QFile file(Paths::onDisk(path));
    if (!file.exists())
        return true;
    if (file.size() > largestFile || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;
    const QByteArray utf8 = asUtf8(bytes);
    return content_->ini.LoadData(utf8.constData(), static_cast<size_t>(utf8.size())) >= 0;
}

bool IniFile::save(const QString& path) const {
    std::string text;
    if (content_->ini.Save(text) < 0)
        return false;
    QSaveFile file(Paths::onDisk(path));
    return file.open(QIODevice::WriteOnly) &&
           file.write(text.data(), static_cast<qint64>(text.size())) == static_cast<qint64>(text.size()) &&
           file.commit();
}

std::optional<QString> IniFile::value(const QString& section, const QString& key) const {
    const char* const line = content_->ini.GetValue(section.toUtf8().constData(), key.toUtf8().constData());
    return line ? std::optional(fromLine(QString::fromUtf8(line))) : std::nullopt;
}

void IniFile::setValue(const QString& section, const QString& key, const QString& value) {
    content_->ini.SetValue(section.toUtf8().constData(), key.toUtf8().constData(), toLine(value).toUtf8().constData());
}

bool IniFile::hasSection(const QString& section) const {
    return content_->ini.SectionExists(section.toUtf8().constData());
}
