/* $(ProjectName), made on $(Date). */

#include "$(ProjectName).h"

int $(ProjectName)_version(void)
{
    return 1;
}
