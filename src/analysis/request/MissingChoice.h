#pragma once

#include <QString>
#include <array>
#include <optional>

/// The missing values of a new calculation, as the dialog's OK leaves them.
struct MissingAnswer {
    QString sMissing;          ///< empty: no value is missing
    bool bUserMissing = false; ///< it was set, not done without
};

/// What frmNewCalculation shows and takes: the missing values of a new calculation.
class MissingChoice {
public:
    /// Option1: without missing values, or with the settings below.
    enum class Calculation { WithoutMissing, WithSettings };
    /// Option2: one to three values, or a range with perhaps one value.
    enum class Shape { Values, Range };

    /// The dialog as it opens on a definition: numbers in the process's separator. A definition that cannot
    /// be read fails as MissingDefinition does.
    explicit MissingChoice(const QString& sMissing);

    Calculation Option1 = Calculation::WithSettings;
    std::optional<Shape> Option2;
    QString EinzelWert, Rangevon, Rangebis;

    /// OK: the definition that the boxes give. @param fault what is to be shown, in the language in force, where a
    /// check failed; the dialog then stays. @return nothing after a fault
    std::optional<MissingAnswer> cmdOK(QString& fault) const;

    /// What the last OK took.
    struct Last {
        int kind = 0; ///< 0 none, 1 values, 2 range
        double EinzelWert = 0, Rangevon = 0, Rangebis = 0;
    };
    static const Last& last();

private:
    QString failedCheck() const;
    QString definition() const;
};
