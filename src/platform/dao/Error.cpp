#include "platform/dao/Error.h"

using namespace Qt::StringLiterals;

namespace dao {

Error::Error(int number, QString description, QString source)
    : number_(number), description_(std::move(description)), source_(std::move(source)),
      utf8_(description_.toUtf8()) {}

void raiseRuntimeError(int number) {
    throw Error(number, u"Run-time error %1"_s.arg(number));
}

void raiseEngineError(int number, const QString& detail) {
    throw Error(number, u"Syntax error in query expression: "_s + detail);
}

}
