#include "usercollator_p.h"

namespace quorvane {

// Sorting without regard to case is asked of the C locale too, where Qt compares numbers of
// characters. English has no rules of its own beyond those for all languages.
QCollator userCollator()
{
    QCollator collator;
    if (collator.locale().language() == QLocale::C)
        collator.setLocale(QLocale(QLocale::English));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

} // namespace quorvane
