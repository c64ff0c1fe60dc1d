#pragma once

#include <QString>
#include <QStringList>

namespace store {

// The form of a person's or firm's name in which the ways an office writes one name are equal:
// letter case, accents, punctuation and word order do not count, and legal-form words (Kft.,
// GmbH, Ltd., ...) are left out. "Kovács és Társa Kft.", "KOVACS ES TARSA" and "Társa és
// Kovács Bt" all give "kovacs tarsa" (the joining words "és", "and", "und", "&" do not count
// either); "Kovácsné" stays apart from "Kovács". A name without letters or digits gives an
// empty key, which matches nothing.
class NameMatch
{
public:
    // The legal-form words as a catalogue text holds them, separated by spaces or commas.
    explicit NameMatch(const QString& legalForms = QString());

    QString key(const QString& name) const;

    // The words of the catalogue's legal-form list, in three languages alike.
    static QString defaultLegalForms();

private:
    QStringList words(const QString& text) const;

    QStringList m_legalForms;
};

} // namespace store
