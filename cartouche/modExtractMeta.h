#pragma once
// modExtractMeta: the readers of the comment block and of the few
// EXIF fields the program uses. They work on the session record, from the
// texts that the loading step put there: ExifTexte (main directory, kind 1),
// IptcTexte (EXIF directory, kind 2), CommentaireImage (the file's comment).
// Every defect of a block reads as empty; messages go through Dialogues().
#include <QString>

#include "core/SessionRecord.h"

namespace tg {

// Product name that VerifierEffacerMetaComment requires at the head of the
// block's Application value.
inline const QString ProduitBloc = QStringLiteral("Tessellographe");

// Shown when a comment of another program is dropped (no icon, program title).
inline const QString TexteMetaIncompatible = QStringLiteral(
    "Anciens commentaires non récupérés (meta-comments non compatibles)  !\n"
    "(Application <> Tessellographe)");

// Value of one key of the block; empty when not found. The search is for the
// bare key, first occurrence, case ignored, anywhere in the text (a title
// holding "ApPhoto" hides the real ApPhoto= line). The window is Len(key) + 75
// characters from the key, 650 for MotClef; a value whose CR LF falls outside
// reads as empty. ZoomNumerique, LongueurFocale, EchellePix, Objectif and
// ReductionImage get the decimal separator `separateurDecimal` ("," or ".").
QString ExtractComment(const QString& bloc, const QString& cle, const QString& separateurDecimal);
// The same on CommentaireImage with the session's separator.
QString ExtractComment(const SessionRecord& s, const QString& cle);

// A non-empty CommentaireImage whose Application does not start with
// "Tessellographe" is dropped (CommentaireImage and Application emptied) with
// the message TexteMetaIncompatible. Otherwise Application is set.
void VerifierEffacerMetaComment(SessionRecord& s);

// DateImage (DateTimeOriginal, else DateTime), Modele and ApPhotoMeta (Model),
// FocaleAPN (FocalLength "n/d", 2 decimals), DigitalZoom (DigitalZoomRatio
// "n/d", 1 decimal) from ExifTexte and IptcTexte. A missing tag gives an empty
// text or 0; so does a denominator of 0 (the EXIF "0/0", "not used").
void ExtraireMetaExif(SessionRecord& s);

// Every block value into the session, in the block's order. A non-numeric
// LongueurFocale, ZoomNumerique or ReductionImage is a trapped error: reported
// "Error 13 (Type mismatch) in procedure ExtraireMetaComment of Module
// modExtractMeta", and the keys after it stay unread.
void ExtraireMetaComment(SessionRecord& s);

// The three readers as the loading step calls them: VerifierEffacerMetaComment,
// ExtraireMetaExif, ExtraireMetaComment.
void LireMetadonneesImage(SessionRecord& s);

// Value of a "name = value" line of a metadata text (Metadata_Get_EXIF's
// form, lines joined by CR LF); empty when the tag is absent.
QString ValeurExif(const QString& texte, const QString& nom);

}  // namespace tg
