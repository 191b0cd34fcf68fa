#pragma once
// Text and number helpers shared by every window.
#include <QString>

namespace tg {

// Key filter of numeric fields: with separator "," a typed '.' (46) becomes
// ',' (44); with "." a typed ',' becomes '.'. Other keys pass. In place.
void ReplaceNationalSep(int& touche, const QString& separateurDecimal);

QString EnleverAccents(const QString& texte);
QString EnleverSpeciaux(const QString& texte);
QString EnleverGuillemets(const QString& texte);
QString EnleverEgal(const QString& texte);
QString EnleverRetours(const QString& texte);

// True for a number above 0 (resp. 0 or more) in the locale's form; otherwise
// shows the refusal under "Erreur sur les champs numériques" and returns false.
bool ControleNonNul(const QString& valeur);
bool ControlePositif(const QString& valeur);

// Parses a number typed with either decimal sign; false when it is not one.
bool LireNombre(const QString& texte, double& valeur);

// "." or ",", from the system locale; the country's name in its own language.
QString SeparateurDecimalSysteme();
QString PaysUtilisateurSysteme();

}  // namespace tg
