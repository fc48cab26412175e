// The C library's case tables of a UTF-8 locale, whatever locale the process runs in. Surrogates
// are left alone, as the Windows call leaves them.
#include "foundation/os_case.h"

#include <locale.h>
#include <pthread.h>
#include <wctype.h>

namespace {

locale_t g_locale = static_cast<locale_t>(0);
pthread_once_t g_once = PTHREAD_ONCE_INIT;

void OpenLocale() {
  g_locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(0));
}

template <typename Convert>
void ConvertUnits(char16_t* units, int count, Convert convert) {
  pthread_once(&g_once, OpenLocale);
  for (int i = 0; i < count; ++i) {
    char16_t unit = units[i];
    if (unit >= 0xD800 && unit <= 0xDFFF) continue;
    wint_t converted = g_locale ? convert(unit, g_locale) : unit;
    // A case partner outside the 16-bit range would need two units: the unit stays.
    if (converted <= 0xFFFF) units[i] = static_cast<char16_t>(converted);
  }
}

}  // namespace

void OsUpperCase(char16_t* units, int count) {
  ConvertUnits(units, count, [](wint_t c, locale_t l) { return towupper_l(c, l); });
}

void OsLowerCase(char16_t* units, int count) {
  ConvertUnits(units, count, [](wint_t c, locale_t l) { return towlower_l(c, l); });
}
