#pragma once

#include <QByteArray>
#include <QString>
#include <iconv.h>
#include <locale.h>

/// What a survey file's bytes mean.

/// True if no byte has its highest bit set.
bool isAscii(const char* text, int bytes);

/// Tells text of one encoding from other bytes.
class EncodingCheck {
public:
    explicit EncodingCheck(const QByteArray& encoding) : converter_(iconv_open("UTF-8", encoding.constData())) {}
    ~EncodingCheck() {
        if (isKnown())
            iconv_close(converter_);
    }
    EncodingCheck(const EncodingCheck&) = delete;
    EncodingCheck& operator=(const EncodingCheck&) = delete;

    bool isKnown() const { return converter_ != reinterpret_cast<iconv_t>(-1); }

    /// True also for a last character that is not all there.
    bool reads(const char* text) const;

private:
    iconv_t converter_;
};

/// The encoding that a system file names, if it can be read; else empty.
QByteArray ownEncoding(const QString& path);

/// Sets how bytes and characters belong together while it lives: the reader of .por files asks the system, so
/// that its texts would depend on the user's settings.
class Utf8Characters {
public:
    Utf8Characters() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
        if (locale_)
            before_ = uselocale(locale_);
    }
    ~Utf8Characters() {
        if (!locale_)
            return;
        uselocale(before_);
        freelocale(locale_);
    }
    Utf8Characters(const Utf8Characters&) = delete;
    Utf8Characters& operator=(const Utf8Characters&) = delete;

private:
    locale_t locale_;
    locale_t before_ = nullptr;
};
