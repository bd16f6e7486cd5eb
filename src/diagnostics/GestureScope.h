#pragma once

#include <QString>

/// One gesture of the user, for as long as it lives: a file that went bad under the program fails in each of the gesture's
/// steps, and the user is told once. Outside a gesture every failure is told.
///
/// A scope within a scope belongs to the gesture of the outer one.
class GestureScope {
public:
    GestureScope();
    ~GestureScope();
    GestureScope(const GestureScope&) = delete;
    GestureScope& operator=(const GestureScope&) = delete;

    /// To be asked before a failure is told. @return false if the gesture has told of the same already
    static bool tells(int number, const QString& procedure);
    /// True if the file that a failure of this kind is about has been told of in this gesture.
    static bool hasTold(int number);
    /// What follows is new: a step that the user tries again, another file that the user has chosen.
    static void startAnew();
};
