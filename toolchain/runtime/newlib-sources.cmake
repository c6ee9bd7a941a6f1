# What is taken from newlib: each source becomes one member of its library. What isn't here is
# either ours (libc/, stdio/) or not for a processor without files, processes and locales.

set(NEWLIB_LIBC_SOURCES
  ctype: ctype_ isalnum isalpha isascii isblank iscntrl isdigit islower isprint ispunct isspace
    isupper isxdigit toascii tolower toupper
  misc: ffs
  search: bsearch qsort tdelete tdestroy tfind tsearch twalk
  stdlib: abs div imaxabs imaxdiv itoa labs ldiv llabs lldiv rand_r utoa
  string: bcmp bcopy bzero ffsl ffsll fls flsl flsll index memccpy memchr memcmp memmem mempcpy
    memrchr rawmemchr rindex stpcpy stpncpy strcasestr strcat strchr strchrnul strcmp
    strcoll strcpy strcspn strerror strlcat strlcpy strlwr strncat strncmp strncpy
    strnlen strnstr strpbrk strrchr strsep strspn strstr strtok_r strupr strverscmp strxfrm
    u_strerr wcscat wcschr wcscmp wcscoll wcscpy wcscspn wcslen wcsncat wcsncmp wcsncpy wcsnlen
    wcspbrk wcsrchr wcsspn wcsstr wcstok wmemchr wmemcmp wmemcpy wmemmove wmemset
  time: difftime gmtime_r month_lengths)

set(NEWLIB_LIBM_SOURCES
  math: e_acos e_acosh e_asin e_atan2 e_atanh e_cosh e_exp e_fmod e_hypot e_j0 e_j1 e_jn e_log
    e_log10 e_pow e_rem_pio2 e_remainder e_scalb e_sinh e_sqrt ef_acos ef_acosh ef_asin ef_atan2
    ef_atanh ef_cosh ef_exp ef_fmod ef_hypot ef_j0 ef_j1 ef_jn ef_log ef_log10 ef_pow
    ef_rem_pio2 ef_remainder ef_scalb ef_sinh ef_sqrt el_hypot er_gamma er_lgamma erf_gamma erf_lgamma k_cos
    k_rem_pio2 k_sin k_standard k_tan kf_cos kf_rem_pio2 kf_sin kf_tan s_asinh s_atan s_ceil
    s_cos s_erf s_fabs s_floor s_frexp s_ldexp s_signif s_sin s_tan s_tanh sf_asinh sf_atan
    sf_ceil sf_cos sf_erf sf_fabs sf_floor sf_frexp sf_ldexp sf_signif sf_sin sf_tan sf_tanh
    w_acos w_acosh w_asin w_atan2 w_atanh w_cosh w_drem w_exp w_exp2 w_fmod w_gamma w_hypot w_j0
    w_j1 w_jn w_lgamma w_log w_log10 w_pow w_remainder w_scalb w_sincos w_sinh w_sqrt w_tgamma
    wf_acos wf_acosh wf_asin wf_atan2 wf_atanh wf_cosh wf_drem wf_exp wf_exp2 wf_fmod wf_gamma
    wf_hypot wf_j0 wf_j1 wf_jn wf_lgamma wf_log wf_log10 wf_log2 wf_pow wf_remainder wf_scalb
    wf_sincos wf_sinh wf_sqrt wf_tgamma wr_gamma wr_lgamma wrf_gamma wrf_lgamma
  common: math_err math_errf acoshl acosl asinhl asinl atan2l atanhl atanl cbrtl ceill copysignl cosf coshl cosl
    erfcl erfl exp2l expl expm1l fabsl fdiml floorl fmal fmaxl fminl fmodl frexpl hypotl ilogbl
    ldexpl lgammal llrintl llroundl log10l log1pl log2l logbl logl lrintl lroundl modfl nanl
    nearbyintl nextafterl nexttoward nexttowardf nexttowardl powl remainderl remquol rintl
    roundl s_cbrt s_copysign s_exp10 s_expm1 s_fdim s_finite s_fma s_fmax s_fmin s_fpclassify
    s_ilogb s_infinity s_isinf s_isinfd s_isnan s_isnand s_lib_ver s_llrint s_llround s_log1p
    s_log2 s_logb s_lrint s_lround s_modf s_nan s_nearbyint s_nextafter s_pow10 s_remquo s_rint
    s_round s_scalbln s_scalbn s_signbit s_trunc scalblnl scalbnl sf_cbrt sf_copysign sf_exp10
    sf_expm1 sf_fdim sf_finite sf_fma sf_fmax sf_fmin sf_fpclassify sf_ilogb sf_infinity
    sf_isinf sf_isinff sf_isnan sf_isnanf sf_llrint sf_llround sf_log1p sf_log2 sf_logb sf_lrint
    sf_lround sf_modf sf_nan sf_nearbyint sf_nextafter sf_pow10 sf_remquo sf_rint sf_round
    sf_scalbln sf_scalbn sf_trunc sinhl sinl sqrtl tanhl tanl tgammal truncl
  fenv: fe_dfl_env feclearexcept fegetenv fegetexceptflag fegetround feholdexcept fenv_stub
    feraiseexcept fesetenv fesetexceptflag fesetround fetestexcept feupdateenv
  complex: cabs cabsf cabsl cacos cacosf cacosh cacoshf cacoshl cacosl carg cargf cargl casin
    casinf casinh casinhf casinhl casinl catan catanf catanh catanhf catanhl catanl ccos ccosf
    ccosh ccoshf ccoshl ccosl cephes_subr cephes_subrf cephes_subrl cexp cexpf cexpl cimag cimagf
    cimagl clog clog10 clog10f clogf clogl conj conjf conjl cpow cpowf cpowl cproj cprojf cprojl
    creal crealf creall csin csinf csinh csinhf csinhl csinl csqrt csqrtf csqrtl ctan ctanf ctanh
    ctanhf ctanhl ctanl)

# Relative to newlib/libc/include; ours, in include/, come over them.
set(NEWLIB_HEADERS
  _ansi.h alloca.h assert.h complex.h ctype.h errno.h fastmath.h fenv.h ieeefp.h inttypes.h
  limits.h locale.h malloc.h math.h memory.h reent.h search.h setjmp.h signal.h stdint.h stdlib.h
  string.h strings.h tgmath.h time.h wchar.h
  machine/_arc4random.h machine/_default_types.h machine/_endian.h machine/_time.h
  machine/_types.h machine/ansi.h machine/endian.h machine/fastmath.h machine/ieeefp.h
  machine/malloc.h machine/param.h machine/setjmp.h machine/stdlib.h machine/time.h
  machine/types.h
  sys/_default_fcntl.h sys/_intsup.h sys/_locale.h sys/_pthreadtypes.h sys/_sigset.h
  sys/_stdint.h sys/_timespec.h sys/_timeval.h sys/_types.h sys/cdefs.h sys/config.h sys/errno.h
  sys/features.h sys/fenv.h sys/lock.h sys/param.h sys/sched.h sys/select.h sys/signal.h
  sys/string.h sys/syslimits.h sys/time.h sys/timespec.h sys/types.h)
