#include "fuzzylogic/framework/Messages.h"

namespace fzy {

TMessage SAssignError{u"There is no assignment from %s to %s"};
TMessage SListIndexError{u"There is no item with index %d"};
TMessage SDuplicateItem{u"The key is there already"};
TMessage SItemNotFound{u"There is no such item"};
TMessage SArgumentOutOfRange{u"The argument is beyond what is allowed"};
TMessage SValueOutOfRange{u"The value must lie between %d and %d"};
TMessage SIntfCastError{u"The object lacks the interface that is asked for"};

TMessage SStreamNotWritable{u"The stream cannot be written"};
TMessage SFileNotRead{u"Cannot read \"%s\""};
TMessage SFileNotWritten{u"Cannot write \"%s\""};

TMessage SFormFault{u"Stored form, line %d, %s: %s"};
TMessage SFormLineFault{u"Stored form, line %d: %s"};
TMessage SFormEnds{u"the form ends here, too early"};
TMessage SFormExpected{u"expected %s, not \"%s\""};
TMessage SFormUnknownProperty{u"a %s has no such property"};
TMessage SFormUnknownEntry{u"a %s has no such entry"};
TMessage SFormTwice{u"stands here twice"};
TMessage SFormNameBehindClass{u"the name stands behind the class"};
TMessage SFormBadName{u"\"%s\" is no name of letters, digits and underscores"};
TMessage SFormLinkRefused{u"a %s is not what this can be linked to"};
TMessage SFormMissing{u"is missing"};
TMessage SFormTooDeep{u"objects stand in objects too deep"};
TMessage SFormUnknownTarget{u"there is no place for a %s \"%s\""};
TMessage SFormTargetMissing{u"the form has no %s \"%s\""};
TMessage SFormUnknownComponent{u"there is no component \"%s\""};
TMessage SFormTextOpen{u"the text has no end"};
TMessage SFormTextNotUtf8{u"the text is not UTF-8"};
TMessage SFormTextControl{u"the text holds a control character"};
TMessage SFormTextEscape{u"the text holds an unknown escape"};
TMessage SFormNameNeeded{
    u"Cannot store a link to a %s: it needs a name that no other component of the form has"};
TMessage SFormNotStored{u"Cannot store a %s: %s"};

}  // namespace fzy
