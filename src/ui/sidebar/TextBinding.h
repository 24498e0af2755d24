#pragma once

#include "state/AmbrelAppState.h"

namespace ambrel {

class BioEditor;
class LineEditor;

/// A text of the state that the user edits.
using TextField = Published<AmbrelAppState, QString> AmbrelAppState::*;

/// Keeps `editor` and the state's `field` equal: typing changes the state at once, and a change of the state shows in
/// the editor. A refresh that brings nothing new leaves caret, selection, undo and a composition in progress alone.
/// `editor` must stand in a view environment.
void bindText(LineEditor &editor, TextField field);
void bindText(BioEditor &editor, TextField field);

} // namespace ambrel
