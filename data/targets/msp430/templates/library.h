/* $(ProjectName), made on $(Date). */

#pragma once

int $(ProjectName)_version(void);
