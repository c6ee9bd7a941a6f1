#pragma once

/// Makes the text of editors known to screen readers. Once, at the start of a program.
void installCodeEditAccessibility();
