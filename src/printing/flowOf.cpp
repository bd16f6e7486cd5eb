#include "printing/flows.h"

std::unique_ptr<Flowable> flowOf(const Block& block, double width, const PageSetup& setup) {
    struct Maker {
        double width;
        const PageSetup& setup;
        std::unique_ptr<Flowable> operator()(const TextBlock& text) const { return textFlow(text, width, setup); }
        std::unique_ptr<Flowable> operator()(const FactsBlock& facts) const { return factsFlow(facts, width, setup); }
        std::unique_ptr<Flowable> operator()(const ValuesBlock& values) const {
            return valuesFlow(values, width, setup);
        }
        std::unique_ptr<Flowable> operator()(const TableBlock& table) const { return tableFlow(table, width, setup); }
        std::unique_ptr<Flowable> operator()(const PictureBlock& picture) const {
            return pictureFlow(picture, width, setup);
        }
    };
    return std::visit(Maker{width, setup}, block);
}
