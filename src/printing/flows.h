#pragma once

#include "printing/Block.h"
#include "printing/Flowable.h"
#include "printing/PageSetup.h"

/// Makers of flowables, one for each kind of block. @param width that is there, in twips
std::unique_ptr<Flowable> flowOf(const Block& block, double width, const PageSetup& setup);

std::unique_ptr<Flowable> textFlow(const TextBlock& block, double width, const PageSetup& setup);
std::unique_ptr<Flowable> factsFlow(const FactsBlock& block, double width, const PageSetup& setup);
std::unique_ptr<Flowable> valuesFlow(const ValuesBlock& block, double width, const PageSetup& setup);
std::unique_ptr<Flowable> tableFlow(const TableBlock& block, double width, const PageSetup& setup);
std::unique_ptr<Flowable> pictureFlow(const PictureBlock& block, double width, const PageSetup& setup);
