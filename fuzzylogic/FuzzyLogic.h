#pragma once

// All that an application needs. The library's own files include what they use instead.

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzyOperators.h"
#include "fuzzylogic/engine/FuzzyPointWalk.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/StoredForm.h"
#include "fuzzylogic/framework/Strings.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/interfaces/FuzzyInterfaces.h"
#include "fuzzylogic/interfaces/FuzzyVariableStrings.h"
#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "fuzzylogic/interfaces/UniqueID.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/model/FuzzyLogic.h"
#include "fuzzylogic/vocabulary/FuzzyExceptions.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"
