#pragma once

#include "platform/dao/FunctionBodies.h"
#include "platform/dao/Types.h"

#include <QString>

namespace dao {

/// A function of the language by the name that statements call it.
struct ScalarFunction {
    /// How it is written and computed: most are the SQL function vx_name and its body, a few are more than
    /// that.
    enum class Form { Plain, IIf, Nz, IsNull };

    const char* name;
    int fewest;
    int most;
    int type; ///< of the result; 0: it follows from the arguments
    Value (*body)(const Arguments&) = nullptr;
    Form form = Form::Plain;

    QString sqlName() const { return QStringLiteral("vx_") + QString::fromLatin1(name); }
};

/// Null if there is no such function.
const ScalarFunction* findScalarFunction(const QString& name);

} // namespace dao
