#include "editor/parsers/Keywords.h"

namespace {

/// Words that are separated by blanks.
QStringList split(QStringView words)
{
    QStringList result;
    for (const QStringView word : words.split(u' '))
        result.append(word.toString());
    return result;
}

} // namespace

const QStringList& Keywords::c()
{
    static const QStringList words = split(
        u"and and_eq asm auto bitand bitior bool break case catch char class compl const "
        u"const_cast continue default delete do double dynamic_cast else enum explicit export "
        u"extern false float for friend goto if inline int long mutable namespace new not "
        u"not_eq operator or or_eq private protected public register reinterpret_cast return "
        u"short signed sizeof static static_cast struct switch template this throw true try "
        u"typedef typeid typename union unsigned using virtual void volatile wchar_t while xor "
        u"xor_eq _Bool _Complex _Imaginary sfrb sfrw __code __monitor __interrupt __toplevel");
    return words;
}

const QStringList& Keywords::java()
{
    static const QStringList words = split(
        u"abstract boolean break byte case catch char class const continue default do double "
        u"else extends final finally float for goto if implements import instanceof int "
        u"interface long native new package private protected public return short static super "
        u"switch synchronized this throw throws transient try void volatile while true false "
        u"null");
    return words;
}

const QStringList& Keywords::javaScript()
{
    static const QStringList words =
        split(u"break case catch continue default delete do else finally for function if in "
              u"instanceof new return switch this throw try typeof var void while with abstract "
              u"boolean byte char class const debugger double enum export extends final float goto "
              u"implements import int interface long native package private protected public short "
              u"static super synchronized throws transient volatile");
    return words;
}

const QStringList& Keywords::batch()
{
    static const QStringList words = split(
        u"break call chcp chdir cd cls copy ctty date del dir echo erase exit for goto if md "
        u"mkdir path pause prompt rem ren rename rd rmdir set shift time type ver verify vol");
    return words;
}

const QStringList& Keywords::vhdl()
{
    static const QStringList words = split(
        u"abs access after alias all and architecture array assert attribute begin block body "
        u"buffer bus case component configuration constant disconnent downto else elsif end "
        u"entity exit file for function generate generic group guarded if impure in inertial "
        u"inout is label library linkage literal loop map mod nand new next nor null of on "
        u"open or others out package port postponed procedure process pure range record "
        u"register reject rem report return rol ror select severity signal sla sll sra srl "
        u"subtype then to transport type unaffected units until use variable wait when while "
        u"with xnor xor");
    return words;
}

const QStringList& Keywords::svf()
{
    static const QStringList words = split(
        u"enddr endir frequency hdr hir pio piomap runtest sdr sir state tdr tir trst tdi tdo "
        u"mask smask endstate maximum");
    return words;
}

const QStringList& Keywords::svfStates()
{
    static const QStringList words = split(
        u"reset idle drselect drcapture drshift drpause drexit1 drexit2 drupdate irselect "
        u"ircapture irshift irpause irexit1 irexit2 irupdate hz in out tck inout sec on off z "
        u"absent");
    return words;
}

const QStringList& Keywords::stapl()
{
    static const QStringList words = split(
        u"ACTION BOOLEAN CALL CRC DATA DRSCAN DRSTOP ENDDATA ENDPROC EXIT EXPORT FOR GOTO IF "
        u"INTEGER IRSCAN IRSTOP NEXT NOTE POP POSTDR POSTIR PREDR PREIR PRINT PROCEDURE PUSH "
        u"STATE TRST WAIT BOOL CAPTURE CHR$ COMPARE CYCLES INT MAX OPTIONAL RECOMMENDED STEP "
        u"THEN TO USES USEC VECTOR VMAP FREQUENCY ELSE BEGIN END WHILE WEND REPEAT UNTIL RESET "
        u"IDLE DRSELECT DRCAPTURE DRSHIFT DREXIT1 DRPAUSE DREXIT2 DRUPDATE IRSELECT IRCAPTURE "
        u"IRSHIFT IREXIT1 IRPAUSE IREXIT2 IRUPDATE");
    return words;
}

const QStringList& Keywords::assemblyRegisters()
{
    static const QStringList words = split(
        u"r0 r1 r2 r3 r4 r5 r6 r7 r8 r9 r10 r11 r12 r13 r14 r15 R0 R1 R2 R3 R4 R5 R6 R7 R8 R9 "
        u"R10 R11 R12 R13 R14 R15 sr SR pc PC sp SP");
    return words;
}

const QStringList& Keywords::forthControls()
{
    static const QStringList words =
        split(u"IF THEN ELSE BEGIN UNTIL WHILE REPEAT AGAIN AHEAD DO ?DO LOOP +LOOP CASE OF ENDOF "
              u"ENDCASE");
    return words;
}

const QStringList& Keywords::forthNameWords()
{
    static const QStringList words =
        split(u"[CHAR] [POSTPONE] : ' ['] CONSTANT 2CONSTANT CODE CREATE VARIABLE 2VARIABLE");
    return words;
}

const QStringList& Keywords::forthDefiningWords()
{
    static const QStringList words = split(u": CONSTANT 2CONSTANT CODE CREATE VARIABLE 2VARIABLE");
    return words;
}

const QStringList& Keywords::docGenWordCommands()
{
    static const QStringList words =
        split(u"b i u bi bu iu q sq a e em c tt ref xref param p split ignore contents ui key menu "
              u"table");
    return words;
}

const QStringList& Keywords::docGenLineCommands()
{
    static const QStringList words = split(u"section subsection task title");
    return words;
}
