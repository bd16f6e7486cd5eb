#include "catalogue/SurveyEncoding.h"

#include "catalogue/savExtensions.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

bool isAscii(const char* text, int bytes) {
    return std::all_of(text, text + bytes, [](char c) { return static_cast<signed char>(c) >= 0; });
}

bool EncodingCheck::reads(const char* text) const {
    size_t left = strlen(text);
    if (!isKnown() || isAscii(text, static_cast<int>(left)))
        return true;
    iconv(converter_, nullptr, nullptr, nullptr, nullptr);
    char* from = const_cast<char*>(text); // the C interface takes it so and does not write
    while (left > 0) {
        char out[1024];
        char* to = out;
        size_t room = sizeof out;
        if (iconv(converter_, &from, &left, &to, &room) == size_t(-1) && errno != E2BIG)
            return errno == EINVAL;
    }
    return true;
}

QByteArray ownEncoding(const QString& path) {
    const QByteArray name = savEncodingName(path);
    // The library compares names letter by letter to see that it need not convert.
    if (const QByteArray upper = name.toUpper(); upper == "UTF-8" || upper == "UTF8")
        return "UTF-8";
    return !name.isEmpty() && EncodingCheck(name).isKnown() ? name : QByteArray();
}
