#pragma once

#include "platform/dao/Error.h"

#include <QString>

/// One gesture of the user, for as long as it lives: a file that breaks while the program uses it fails in each of the
/// gesture's steps, and is reported once. Outside a gesture every failure is reported.
///
/// A scope within a scope belongs to the gesture of the outer one.
class GestureScope {
public:
    GestureScope();
    ~GestureScope();
    GestureScope(const GestureScope&) = delete;
    GestureScope& operator=(const GestureScope&) = delete;

    /// To be asked before a failure is reported. @return false if the gesture has reported the same already
    static bool tells(const dao::Error& error, const QString& procedure);
    /// True if the failure is one of a file that has been reported in this gesture.
    static bool hasTold(const dao::Error& error);
    /// The failure's file has been reported and the user ignores it: that holds for the rest of the gesture.
    static void goOnWithout(const dao::Error& error);
    static bool goesOnWithout(const dao::Error& error);
    /// What follows is new: a step that the user tries again, another file that the user has chosen.
    static void startAnew();
};
