#include "projects/properties/StringProvider.h"

StringProvider* stringProvider = nullptr;
