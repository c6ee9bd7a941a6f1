#include "target/script/ScriptSystem.h"

ScriptSystem* scriptSystem = nullptr;
