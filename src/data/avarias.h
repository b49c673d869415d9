#pragma once

#include <QString>

// What failures of a database mean to the person who reads them, whatever the engine.
enum class Avaria {
    Outra,
    Ocupada,     // by another program
    OcupadaAqui, // by another query of this one
    SoLeitura,
    DiscoCheio,
    Disco,
    NaoAbriu,
    SemPermissao,
    Regra, // a rule of the table was broken
    Danificada,
};

namespace avarias {

QString texto(Avaria avaria); // a sentence without its full stop
QString textoDeTrocada(const QString &caminho);
[[noreturn]] void falharFechada();
[[noreturn]] void falharAnulada(); // the engine has undone the transaction by itself
[[noreturn]] void falharEmPasso(); // a batch is being stored

} // namespace avarias
