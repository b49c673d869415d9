#pragma once

#include <QString>

// What can be told of a database file from the file itself, in constant time, before the engine touches it.
struct FicheiroBD {
    bool gravavel = false; // the file and what the engine has to keep beside it
    bool imutavel = false; // only to be read, and nothing can be made beside it
};

// Throws Falha with the reason why the file cannot be used.
FicheiroBD examinarFicheiroBD(const QString &caminho);
