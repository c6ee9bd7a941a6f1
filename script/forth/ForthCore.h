#pragma once

#include "script/forth/PCFA.h"

/// The words of the core, in order: class, name, flags. Each class is the `execute` of its word, in
/// the file of its family.
// clang-format off
#define FORTH_CORE_WORDS(word, immediate) \
    word(FForth, "FORTH", 0) \
    word(FDefinitions, "DEFINITIONS", 0) \
    word(FFind, "FIND", 0) \
    word(FForthWordlist, "FORTH-WORDLIST", 0) \
    word(FGetCurrent, "GET-CURRENT", 0) \
    word(FGetOrder, "GET-ORDER", 0) \
    word(FSearchWordlist, "SEARCH-WORDLIST", 0) \
    word(FSetCurrent, "SET-CURRENT", 0) \
    word(FSetOrder, "SET-ORDER", 0) \
    word(FWordlist, "WORDLIST", 0) \
    word(FWords, "WORDS", 0) \
    word(FAlso, "ALSO", 0) \
    word(FOrder, "ORDER", 0) \
    word(FOnly, "ONLY", 0) \
    word(FPrevious, "PREVIOUS", 0) \
    word(FVocabulary, "VOCABULARY", 0) \
    word(PDotS, ".S", 0) \
    word(PAhead, "AHEAD", 0) \
    word(PBracketDefined, "[DEFINED]", immediate) \
    word(PBracketUndefined, "[UNDEFINED]", immediate) \
    word(PStore, "!", 0) \
    word(PTick, "'", 0) \
    word(PParen, "(", immediate) \
    word(PStar, "*", 0) \
    word(PStarSlash, "*/", 0) \
    word(PStarSlashMod, "*/MOD", 0) \
    word(PPlus, "+", 0) \
    word(PPlusStore, "+!", 0) \
    word(PPlusLoop, "+LOOP", immediate) \
    word(PComma, ",", 0) \
    word(PMinus, "-", 0) \
    word(PMinusRot, "-ROT", 0) \
    word(PDot, ".", 0) \
    word(PDotQuote, ".\"", immediate) \
    word(PSlash, "/", 0) \
    word(PSlashMod, "/MOD", 0) \
    word(PZeroLess, "0<", 0) \
    word(PZeroEquals, "0=", 0) \
    word(POnePlus, "1+", 0) \
    word(POneMinus, "1-", 0) \
    word(PTwoStore, "2!", 0) \
    word(PTwoStar, "2*", 0) \
    word(PTwoSlash, "2/", 0) \
    word(PTwoFetch, "2@", 0) \
    word(PTwoDrop, "2DROP", 0) \
    word(PTwoDup, "2DUP", 0) \
    word(PTwoOver, "2OVER", 0) \
    word(PTwoSwap, "2SWAP", 0) \
    word(PColon, ":", 0) \
    word(PSemicolon, ";", immediate) \
    word(PLess, "<", 0) \
    word(PEquals, "=", 0) \
    word(PGreater, ">", 0) \
    word(PGreaterEquals, ">=", 0) \
    word(PToBody, ">BODY", 0) \
    word(PToNumber, ">NUMBER", 0) \
    word(PToR, ">R", 0) \
    word(PQuestionDup, "?DUP", 0) \
    word(PFetch, "@", 0) \
    word(PAbort, "ABORT", 0) \
    word(PAbs, "ABS", 0) \
    word(PAllot, "ALLOT", 0) \
    word(PAnd, "AND", 0) \
    word(PBegin, "BEGIN", immediate) \
    word(PChar, "CHAR", 0) \
    word(PCharPlus, "CHAR+", 0) \
    word(PChars, "CHARS", 0) \
    word(PConstant, "CONSTANT", 0) \
    word(PCount, "COUNT", 0) \
    word(PCr, "CR", 0) \
    word(PCreate, "CREATE", 0) \
    word(PDepth, "DEPTH", 0) \
    word(PDo, "DO", immediate) \
    word(PDoes, "DOES>", immediate) \
    word(PDrop, "DROP", 0) \
    word(PDup, "DUP", 0) \
    word(PElse, "ELSE", immediate) \
    word(PEmit, "EMIT", 0) \
    word(PExecute, "EXECUTE", 0) \
    word(PExit, "EXIT", immediate) \
    word(PHere, "HERE", 0) \
    word(PI, "I", immediate) \
    word(PIf, "IF", immediate) \
    word(PImmediate, "IMMEDIATE", 0) \
    word(PInvert, "INVERT", 0) \
    word(PJ, "J", immediate) \
    word(PLeave, "LEAVE", immediate) \
    word(PLiteral, "LITERAL", immediate) \
    word(PLoop, "LOOP", immediate) \
    word(PLshift, "LSHIFT", 0) \
    word(PMax, "MAX", 0) \
    word(PMin, "MIN", 0) \
    word(PMod, "MOD", 0) \
    word(PMove, "MOVE", 0) \
    word(PNegate, "NEGATE", 0) \
    word(POr, "OR", 0) \
    word(POver, "OVER", 0) \
    word(PPostpone, "POSTPONE", immediate) \
    word(PRFrom, "R>", 0) \
    word(PRFetch, "R@", 0) \
    word(PRecurse, "RECURSE", immediate) \
    word(PRepeat, "REPEAT", immediate) \
    word(PRot, "ROT", 0) \
    word(PRshift, "RSHIFT", 0) \
    word(PSQuote, "S\"", immediate) \
    word(PSpace, "SPACE", 0) \
    word(PSpaces, "SPACES", 0) \
    word(PState, "STATE", 0) \
    word(PSwap, "SWAP", 0) \
    word(PThen, "THEN", immediate) \
    word(PULess, "U<", 0) \
    word(PUntil, "UNTIL", immediate) \
    word(PVariable, "VARIABLE", 0) \
    word(PWhile, "WHILE", immediate) \
    word(PWord, "WORD", 0) \
    word(PXor, "XOR", 0) \
    word(PLeftBracket, "[", immediate) \
    word(PBracketTick, "[']", immediate) \
    word(PBracketChar, "[CHAR]", immediate) \
    word(PRightBracket, "]", immediate) \
    word(PDotParen, ".(", immediate) \
    word(PDotR, ".R", 0) \
    word(PZeroNotEquals, "0<>", 0) \
    word(PZeroGreater, "0>", 0) \
    word(PZeroGreaterEquals, "0>=", 0) \
    word(PTwoToR, "2>R", 0) \
    word(PTwoRFrom, "2R>", 0) \
    word(PTwoRFetch, "2R@", 0) \
    word(PColonNoname, ":NONAME", 0) \
    word(PNotEquals, "<>", 0) \
    word(PQuestionDo, "?DO", immediate) \
    word(PAgain, "AGAIN", immediate) \
    word(PCase, "CASE", immediate) \
    word(PCompileComma, "COMPILE,", 0) \
    word(PConvert, "CONVERT", 0) \
    word(PEndcase, "ENDCASE", immediate) \
    word(PEndof, "ENDOF", immediate) \
    word(PNip, "NIP", 0) \
    word(POf, "OF", immediate) \
    word(PParse, "PARSE", 0) \
    word(PPick, "PICK", 0) \
    word(PQuery, "QUERY", 0) \
    word(PRefill, "REFILL", 0) \
    word(PRestoreInput, "RESTORE-INPUT", 0) \
    word(PRoll, "ROLL", 0) \
    word(PSaveInput, "SAVE-INPUT", 0) \
    word(PSourceId, "SOURCE-ID", 0) \
    word(PTo, "TO", immediate) \
    word(PTuck, "TUCK", 0) \
    word(PUGreater, "U>", 0) \
    word(PUnused, "UNUSED", 0) \
    word(PValue, "VALUE", 0) \
    word(PWithin, "WITHIN", 0) \
    word(PBracketCompile, "[COMPILE]", immediate) \
    word(PBackslash, "\\", immediate) \
    word(PBracketIf, "[IF]", immediate) \
    word(PBracketElse, "[ELSE]", immediate) \
    word(PBracketThen, "[THEN]", immediate) \
    word(PFloor, "FLOOR", 0) \
    word(PFSin, "FSIN", 0) \
    word(PFCos, "FCOS", 0) \
    word(PFTan, "FTAN", 0) \
    word(PParenLocal, "(LOCAL)", 0) \
    word(PParenTemp, "(TEMP)", 0) \
    word(PLocalsBar, "LOCALS|", immediate) \
    word(PTempsBar, "TEMPS|", immediate) \
    word(FBin, "BIN", 0) \
    word(FCloseFile, "CLOSE-FILE", 0) \
    word(FCreateFile, "CREATE-FILE", 0) \
    word(FDeleteFile, "DELETE-FILE", 0) \
    word(FFilePosition, "FILE-POSITION", 0) \
    word(FIncludeFile, "INCLUDE-FILE", 0) \
    word(FIncluded, "INCLUDED", 0) \
    word(FOpenFile, "OPEN-FILE", 0) \
    word(FReadOnly, "R/O", 0) \
    word(FReadWrite, "R/W", 0) \
    word(FReadFile, "READ-FILE", 0) \
    word(FReadLine, "READ-LINE", 0) \
    word(FRepositionFile, "REPOSITION-FILE", 0) \
    word(FResizeFile, "RESIZE-FILE", 0) \
    word(FWriteOnly, "W/O", 0) \
    word(FWriteFile, "WRITE-FILE", 0) \
    word(FWriteLine, "WRITE-LINE", 0) \
    word(FInclude, "INCLUDE", 0) \
    word(PThrow, "THROW", 0) \
    word(PCatch, "CATCH", 0)
// clang-format on

#define FORTH_DECLARE_WORD(Class, text, flags)                                                     \
    class Class : public pcode {                                                                   \
    public:                                                                                        \
        void execute(FSContext* context) override;                                                 \
        QString name() const override { return QStringLiteral(text); }                             \
        std::unique_ptr<pcode> copy() const override { return std::make_unique<Class>(); }         \
    };
FORTH_CORE_WORDS(FORTH_DECLARE_WORD, PCFA::Immediate)
#undef FORTH_DECLARE_WORD

/// Makes the words of the core and the constants TRUE and FALSE, in the word list FORTH.
void init_core(FSContext* context);
/// Adds a word of one node to the current word list. The context owns the node.
void addDictionary(FSContext* context, pcode* code, const QString& name, int flags);
void newConstant(FSContext* context, const QString& name, const X& value);
