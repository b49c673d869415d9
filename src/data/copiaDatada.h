#pragma once

#include <QString>

#include <functional>

class Vigia;

// Copies the open database to a new file beside it, named after the present time, and gives back its path. The copy
// is the state of one moment, also while other programs go on writing, and never replaces a file. Lets events run;
// `progresso` gets parts done of a whole. A failure (Falha) or an Interrompido leaves no file behind.
QString copiaDatada(const Vigia &vigia, const std::function<void(int, int)> &progresso = {});
