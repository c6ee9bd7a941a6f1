#!/usr/bin/env python3
"""Writes the texts that the pictures of the editor show, and the names of its colour schemes."""
import pathlib
import re
import sys

TREE = pathlib.Path(__file__).resolve().parent.parent

LANGUAGES = {
    "c.c": '''/*! \\brief Blinks an LED.
 * \\param period in ms; see \\ref delay.
 */
#include <msp430.h>
#define LED BIT0

static volatile unsigned ticks; // mispelled coments are underlined

int main(void)
{
\tWDTCTL = WDTPW + WDTHOLD;
\tP1DIR |= LED;
\tfor (int i = 0; i < 10; i++) {
\t\tP1OUT ^= LED;
\t\tdelay(0x1F4, "text with \\"quotes\\"", 'c');
\t}
\treturn 0;
}
''',
    "java.java": '''// The same in Java.
public class Blink extends Thread {
    private static final int PERIOD = 500; /* ms */
    public void run() { System.out.println("on \\u00e4 off"); }
}
''',
    "javascript.js": '''// Counts to three.
for (var i = 1; i <= 3; i++)
    WScript.Echo("line " + i + ' of 3');
function square(x) { return x * x; }
''',
    "xml.xml": '''<?xml version="1.0" encoding="UTF-8"?>
<!-- A solution. -->
<solution Name="first" version="2">
  <project Name="app" template_name="msp430_g2xx"/>
  &lt;text&gt; between tags
</solution>
''',
    "vhdl.vhd": '''-- A counter.
entity counter is
  port (clk : in bit; q : out integer range 0 to 15);
end counter;
architecture rtl of counter is
begin
  process (clk)
  begin
    if clk'event and clk = '1' then q <= 1; end if;
  end process;
end rtl;
''',
    "forth.fs": '''\\ Words of arithmetic.
: SQUARE ( n -- n*n ) DUP * ;
: GREET ." Hello, world" CR ;
{ a comment
  over lines }
: CHECK 0 > IF ." positive" ELSE ." not" THEN ;
''',
    "assembly.s43": '''; Adds two numbers.
#define ONE 1
        .text
add:    mov.w   #0x1234, r5     ; the first
        add.w   @r6+, r5
        jnz     add
        mov.b   $10, &P1OUT     // port 1
        ret
''',
    "batch.bat": '''echo Building
if exist out rd out
for %%f in (*.c) do copy %%f out
exit
''',
    "docgen.dg": '''\\title The manual
\\section Beginning
This is \\b bold and \\i{some words in italics}, and &lt; is an entity.
\\code
int main(void);
\\endcode
See \\ref other.
''',
    "svf.svf": '''! Serial vector format.
TRST OFF;
ENDIR IDLE;
SIR 8 TDI (FF) TDO (01);
RUNTEST 100 TCK ENDSTATE IDLE;
''',
    "stapl.stapl": '''' A script in STAPL.
ACTION RUN = MAIN;
PROCEDURE MAIN;
PRINT "hello";
IRSCAN 8, $FF;
IF (x == 1) THEN EXIT 0;
ENDPROC;
''',
    "plain.txt": "Plain text has no colours.\n",
}

UNICODE = (
    "Wide: \u6f22\u5b57 and \u304b\u306a, emoji \U0001F600\n"
    "Hebrew: \u05e9\u05dc\u05d5\u05dd world, Arabic: \u0645\u0631\u062d\u0628\u0627 world\n"
    "Combining: e\u0301 a\u0308 n\u0303\n"
)


def main():
    folder = pathlib.Path(sys.argv[1])
    languages = folder / "languages"
    languages.mkdir(parents=True)
    for name, text in LANGUAGES.items():
        (languages / name).write_text(text, encoding="utf-8")
    (folder / "unicode.txt").write_text(UNICODE, encoding="utf-8")
    source = (TREE / "shared/benchlib/editor/widget/CodeEditColorScheme.cpp").read_text()
    (folder / "schemes").write_text("\n".join(re.findall(r'\{u"([A-Z][^"]+)",\n', source)) + "\n")
    constants = (TREE / "shared/benchlib/base/TargetConstants.h").read_text()

    def constant(name):
        return re.search(name + r'\(\)[^"]*"([^"]*)"', constants).group(1)

    owner = constant("Get_OWNER") + "/" + constant("Get_PRODUCT_GENERIC_NAME")
    (folder / "owner").write_text("." + owner.lower().replace(" ", "_"))


if __name__ == "__main__":
    main()
