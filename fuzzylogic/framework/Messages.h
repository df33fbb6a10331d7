#pragma once

#include "fuzzylogic/framework/Message.h"

namespace fzy {

/// "There is no assignment from %s to %s"
extern TMessage SAssignError;
/// "There is no item with index %d"
extern TMessage SListIndexError;

/// "The key is there already"
extern TMessage SDuplicateItem;
/// "There is no such item"
extern TMessage SItemNotFound;
/// "The argument is beyond what is allowed"
extern TMessage SArgumentOutOfRange;
/// "The value must lie between %d and %d"
extern TMessage SValueOutOfRange;
/// "The object lacks the interface that is asked for"
extern TMessage SIntfCastError;

// Streams and files.

/// "The stream cannot be written"
extern TMessage SStreamNotWritable;
/// "Cannot read "%s""
extern TMessage SFileNotRead;
/// "Cannot write "%s""
extern TMessage SFileNotWritten;

// Stored forms. Those that begin in lower case are what is wrong in a fault.

/// "Stored form, line %d, %s: %s"
extern TMessage SFormFault;
/// "Stored form, line %d: %s"
extern TMessage SFormLineFault;
/// "the form ends here, too early"
extern TMessage SFormEnds;
/// "expected %s, not "%s""
extern TMessage SFormExpected;
/// "a %s has no such property"
extern TMessage SFormUnknownProperty;
/// "a %s has no such entry"
extern TMessage SFormUnknownEntry;
/// "stands here twice"
extern TMessage SFormTwice;
/// "the name stands behind the class"
extern TMessage SFormNameBehindClass;
/// ""%s" is no name of letters, digits and underscores"
extern TMessage SFormBadName;
/// "a %s is not what this can be linked to"
extern TMessage SFormLinkRefused;
/// "is missing"
extern TMessage SFormMissing;
/// "objects stand in objects too deep"
extern TMessage SFormTooDeep;
/// "there is no place for a %s "%s""
extern TMessage SFormUnknownTarget;
/// "the form has no %s "%s""
extern TMessage SFormTargetMissing;
/// "there is no component "%s""
extern TMessage SFormUnknownComponent;
/// "the text has no end"
extern TMessage SFormTextOpen;
/// "the text is not UTF-8"
extern TMessage SFormTextNotUtf8;
/// "the text holds a control character"
extern TMessage SFormTextControl;
/// "the text holds an unknown escape"
extern TMessage SFormTextEscape;
/// "Cannot store a link to a %s: it needs a name that no other component of the form has"
extern TMessage SFormNameNeeded;
/// "Cannot store a %s: %s"
extern TMessage SFormNotStored;

}  // namespace fzy
