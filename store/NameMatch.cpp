#include "store/NameMatch.h"

#include <algorithm>

namespace store {

NameMatch::NameMatch(const QString& legalForms)
{
    m_legalForms = words(legalForms.isEmpty() ? defaultLegalForms() : legalForms);
    std::sort(m_legalForms.begin(), m_legalForms.end());
}

QString NameMatch::defaultLegalForms()
{
    return QStringLiteral("Kft. Bt. Zrt. Nyrt. Rt. Kkt. Kht. Nonprofit Szövetkezet Egyéni "
                          "vállalkozó E.V. Ev. GmbH AG KG OG OHG e.U. Ltd. Limited Inc. "
                          "Corp. LLC PLC LLP Co. S.A. S.R.L.");
}

QStringList NameMatch::words(const QString& text) const
{
    // Decomposed, the accents are marks of their own that can be dropped; folded, "Ő" and "o"
    // are alike, and "ß" is written out as "ss" (Qt folds one character to one).
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString plain;
    plain.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing || c.category() == QChar::Mark_Enclosing
            || c.category() == QChar::Mark_SpacingCombining)
            continue;
        // Dots inside an abbreviation ("S.A.", "e.U.") join its letters; other punctuation
        // separates words.
        if (c == u'.' || c == u'\'' || c == u'\u2019')
            continue;
        plain += c.isLetterOrNumber() ? c : QChar(u' ');
    }
    return plain.toCaseFolded()
            .replace(QChar(u'\u00df'), QLatin1String("ss"))
            .split(u' ', Qt::SkipEmptyParts);
}

QString NameMatch::key(const QString& name) const
{
    QStringList list = words(name);
    // Legal forms of several words ("Egyéni vállalkozó") are left out word by word; a name
    // made only of such words keeps them, so that it still matches itself.
    static const QStringList joining{QStringLiteral("and"), QStringLiteral("es"),
                                     QStringLiteral("und")};
    QStringList kept;
    for (const QString& word : list) {
        if (!std::binary_search(m_legalForms.cbegin(), m_legalForms.cend(), word)
            && !joining.contains(word))
            kept << word;
    }
    if (!kept.isEmpty())
        list = kept;
    std::sort(list.begin(), list.end());
    return list.join(u' ');
}

} // namespace store
