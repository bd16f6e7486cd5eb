#pragma once

#include "printing/Block.h"
#include "printing/ReportLanguages.h"

#include <QByteArray>

TextBlock textBlock(TextBlock::Style style, const QString& text);
/// A heading of a chapter. @param level from 0
TextBlock headingBlock(const QString& text, int level);
/// Text blocks of one style for a text in the languages of the report, marked where there are several.
void addTexts(std::vector<Block>& blocks, TextBlock::Style style, const BothTexts& text,
              const ReportLanguages& languages);
/// The English name below a heading in the original language; nothing of an empty one.
void addOtherName(std::vector<Block>& blocks, const QString& name, const ReportLanguages& languages);
/// A study as a heading names it: its title, then its number.
QString studyTitle(const ReportLanguages& languages, const QString& number, const BothTexts& title);
/// A study as it is named in the facts: number, title, year.
QString studyName(const QString& number, const QString& title, const QString& year = QString());

/// Blocks of headings, facts and texts, for the spool; others are no part of it.
QByteArray toBytes(const std::vector<Block>& blocks);
std::vector<Block> blocksFrom(const QByteArray& bytes);
