#pragma once

/// What a reader of the screen hears where Qt would let it hear something else: the name of a drop-down list (on some
/// systems Qt says its value in place of it), and tooltips without their markup as descriptions. Once is enough; every
/// window asks for it.
void speakToScreenReaders();
