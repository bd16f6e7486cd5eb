// The program's options, one a row, in the order in which they are read from the registry:
//
//   OPTION(type, key, default in the registry, default in an ini file, place in an ini file, control in the dialog)
//
// Included once for each thing that is made from the rows, hence no guard; whoever includes it defines OPTION. The two
// sources keep their own defaults on purpose. OptionTable.cpp has the forms of control; a control's number is its place
// in the order in which the dialog writes.
// clang-format off
OPTION(bool, EditStudiesMode, false, false, InOrder, noControl())
OPTION(QString, DatabaseName, u"", u"", InOrder,
       path(1, u"txtDatabaseName", u"&Dateiname:", u"Datenbankdatei auswählen (F4)"))
OPTION(QString, DatabasePath, u"", u"", InOrder,
       path(3, u"txtDatabasePath", u"&Ordner:", u"Ordner der Datenbank auswählen (F4)"))
OPTION(bool, ReopenCatalogue, true, true, NotHeld, check(60, u"chkReopenCatalogue", u"Immer die &zuletzt geöffnete"))
OPTION(QString, DataPath, u"", u"", InOrder,
       path(2, u"txtDataPath", u"Pf&ad der Daten (Falldateien):", u"Pfad der Daten auswählen (F4)"))
OPTION(QString, QuestionnairePath, u"", u"", InOrder,
       path(4, u"txtQuestionnairePath", u"&Fragebogen:", u"Ordner der Fragebögen auswählen (F4)"))
OPTION(bool, SortByPosition, true, true, InOrder,
       check(5, u"chkArrangeTwoWindows", u"&Fenster nach einem Suchtreffer anordnen"))
OPTION(bool, TakeSameVarWindow, false, true, InOrder,
       check(6, u"chkTakeSameVarWindow", u"&Immer dasselbe Variablenfenster verwenden"))
OPTION(bool, AlignSBVTop, true, true, InOrder,
       check(7, u"chkbAlignSBVTop", u"Merkmalsleiste oberhalb &des Fragetextes"))
OPTION(bool, DataOnCD, false, true, InOrder, check(8, u"chkDataOnCD", u"Daten-Dateien auf &CD-ROM"))
OPTION(bool, EnglishLanguage, false, true, InOrder, noControl())
OPTION(bool, AutomaticVariableColumnWidth, false, true, InOrder,
       check(9, u"chkbAutoVarWidth", u"&Breite der Variablenspalte anpassen"))
OPTION(QString, SPSSPath, u"", u"", InOrder,
       path(10, u"txtSPSSPath", u"S&PSS-Dateien:", u"Ordner der SPSS-Dateien auswählen (F4)"))
OPTION(QString, SkinPath, u"", u"", InOrder, path(12, u"txtSkinPath", u"&Ordner:", u"Skin-Datei auswählen (F4)"))
OPTION(bool, Skin, true, true, InOrder, check(11, u"chkbSkin", u"&Hintergrundbild verwenden"))
OPTION(bool, ShowCards, true, true, InOrder, check(13, u"chkbShowCards", u"ShowCards &anzeigen"))
OPTION(QString, FixedFont, u"Courier New", u"Courier New", InOrder, fontList(15, u"cmbFixedFont", u"&Feste Breite:"))
OPTION(QString, PropFont, u"Arial", u"Arial", InOrder, fontList(16, u"cmbPropFont", u"&Proportional:"))
OPTION(int, AssignListHeight, 850, 850, InOrder,
       number(42, u"txtAssignListHeight", u"Höhe der &Zuordnungsliste (Twips):", 0, 15000))
OPTION(bool, IncludeMissing, false, false, InOrder, check(17, u"chkIncludeMissing", u"&Fehlende Werte einbeziehen"))
OPTION(bool, IncludeMissingXTab, false, false, InOrder,
       check(18, u"chkIncludeMissingXtab", u"&Fehlende Werte in Kreuztabellen einbeziehen"))
OPTION(bool, IncludeMissingDesc, false, false, InOrder,
       check(19, u"chkIncludeMissingDesc", u"Fehlende &Werte in die Statistik einbeziehen"))
OPTION(QString, FontName, u"ARIAL", u"", InOrder, text(23, u"txtFontName", u"S&chriftart:"))
OPTION(bool, TakeAbsolutValues, true, true, InOrder, check(24, u"chkTakeAbsolutValues", u"&Absolute Werte verwenden"))
OPTION(bool, GraphColor, true, true, InOrder, check(25, u"chkGraphColor", u"&Farbige Grafik"))
OPTION(bool, Landscape, true, true, InOrder, check(26, u"chkLandscape", u"&Querformat"))
OPTION(bool, TrendGraphLine, true, true, InOrder,
       check(27, u"chkTrendGraphLine", u"&Vergleichsauswertung als Liniengrafik"))
OPTION(bool, HeaderStudy, true, true, InOrder, check(28, u"chkHeader(0)", u"S&tudie"))
OPTION(bool, HeaderVar, true, true, InOrder, check(29, u"chkHeader(1)", u"&Variable"))
OPTION(bool, HeaderYear, true, true, InOrder, check(30, u"chkHeader(2)", u"&Jahr"))
OPTION(bool, HeaderGroup, true, true, InOrder, check(31, u"chkHeader(3)", u"V&ariablengruppe"))
OPTION(bool, HeaderValFirst, true, true, InOrder, check(32, u"chkHeader(4)", u"&Wert zuerst"))
OPTION(bool, HeaderValAddVar, true, true, InOrder,
       dependentCheck(33, &Options::HeaderValFirst, Mark::Lost,
                      u"chkHeader(5)", u"Wert &mit Variablenbezeichnung"))
OPTION(int, MaxItems, 20, 20, InOrder, number(36, u"txtMaxItems", u"&Höchstzahl der Kategorien:", 1, 9999))
OPTION(bool, IncludeMissingInPercentXTab, false, false, InOrder,
       dependentCheck(20, &Options::IncludeMissingXTab, Mark::Kept,
                      u"chkIncludeMissingInPercentXtab", u"auch &in die Prozentwerte"))
OPTION(bool, IncludeNinXTab, false, false, InOrder,
       check(21, u"chkIncludeNinXTab", u"&Zeilen und Spalten mit der Anzahl (N)"))
OPTION(bool, IncludeNinXTabPercentNFirst, false, false, InOrder,
       dependentCheck(22, &Options::IncludeNinXTabPercent, Mark::Kept,
                      u"chkIncludeNinXTabPercentNFirst", u"Anzahl &vor dem Prozentwert"))
OPTION(bool, NoColumnLabels, false, false, InOrder, check(55, u"chkNoColumnLabels", u"O&hne Spaltenbeschriftung"))
OPTION(bool, NoRowLabels, false, false, InOrder, check(56, u"chkNoRowLabels", u"&Ohne Zeilenbeschriftung"))
OPTION(bool, IncludeNinXTabPercent, false, false, InOrder,
       check(57, u"chkIncludeNinXTabPercent", u"&Anzahl (N) neben dem Prozentwert"))
OPTION(bool, ShowValidSums, true, true, BeforeNoColumnLabels,
       check(14, u"chkShowValidSums", u"&Gültige Summen anzeigen"))
OPTION(int, StartItem, 1, 1, InOrder, number(37, u"txtStartItem", u"&Erste Kategorie:", 1, 9999))
OPTION(int, ComparisonWeight, 0, 0, InOrder, choices(38, u"optWeight"))
OPTION(bool, HeaderAddWeight, true, true, InOrder, check(34, u"chkHeader(6)", u"&Gewichtung"))
OPTION(bool, HeaderAddFilter, true, true, InOrder, check(35, u"chkHeader(7)", u"&Filter"))
OPTION(bool, CumulatedPercent, true, true, InOrder, check(39, u"chkCumulatedPercent", u"&Kumulierte Prozente"))
OPTION(bool, AutoColWidth, true, true, InOrder, check(40, u"chkAutoColWidth", u"Spaltenbreite &anpassen"))
OPTION(bool, SeparateValidCases, true, true, InOrder,
       check(41, u"chkSeparateValidCases", u"&Gültige Fälle getrennt ausweisen"))
OPTION(bool, ShowPercentSign, true, true, AtEnd, check(43, u"chkShowPercentSign", u"&Prozentzeichen anzeigen"))
OPTION(bool, CommaInPercent, true, true, AtEnd,
       check(44, u"chkCommaInPercent", u"Dezimalzeichen des S&ystems verwenden"))
OPTION(int, PrintPageCount, 99999, 99999, InOrder, noControl())
OPTION(int, PrintStartPage, 1, 1, InOrder, noControl())
OPTION(int, PrintStartPageNumber, 1, 1, InOrder, noControl())
OPTION(int, PrintMaxLevels, 0, 0, InOrder, number(49, u"maxlevel", u"&Tiefe der Gliederung:", 0, 99))
OPTION(QString, PrintDatePosition, u"topmiddle", u"topmiddle", InOrder,
       position(47, u"cmbDate", u"&Datum:", u"botleft"))
OPTION(QString, PrintPageNumberPosition, u"botmiddle", u"botmiddle", InOrder,
       position(46, u"cmbPageNumber", u"S&eitenzahl:", u"botright"))
OPTION(bool, ReportIncludeQuestionText, true, true, InOrder, check(51, u"chkIncludeVars", u"&Fragetexte"))
OPTION(bool, ReportIncludeTables, true, true, InOrder, check(52, u"chkIncludeTables", u"&Gespeicherte Tabellen"))
OPTION(bool, ReportIncludeGraphs, true, true, InOrder, check(53, u"chkIncludeGraphs", u"Ges&peicherte Grafiken"))
OPTION(bool, ReportIncludeShowCards, true, true, InOrder, check(54, u"chkIncludeShowCards", u"S&howCards"))
OPTION(int, ZoomFactor, 100, 100, InOrder, number(48, u"zoomfactor", u"&Vergrößerung von Tabellen, Bildern, Vorschau (%):", 10, 1000))
OPTION(int, FontSize, 11, 11, InOrder, sizeList(50, u"cmbFontSize", u"Sch&riftgröße (Punkt):"))
OPTION(bool, AskMissing, true, true, AtEnd,
       check(45, u"chkAskMissing", u"&Vor der Auswertung nach fehlenden Werten fragen"))
OPTION(int, Descriptives, 126, 126, NotHeld, noControl())
OPTION(QString, DescriptivesDigits, u"2;2;2;2;2;2;2;2;2;2;2;2;2;", u"2;2;2;2;2;2;2;2;2;2;2;2;2;", NotHeld, noControl())
OPTION(bool, TellOfCopies, true, true, NotHeld,
       check(70, u"chkTellOfCopies", u"Nach &dem Kopieren eine Meldung zeigen"))
// clang-format on
#undef OPTION
