#pragma once

#include <QStringView>

#include <span>

// What a click on an entry does besides opening its form.
enum class AccaoMenu {
    Form,          // nothing
    Configuracoes, // only with no child open
    Logger,        // only with the 1-Wire library
    Sensores,      // asks for the password first
};

// One entry of the menu tree.
struct EntradaMenu {
    QStringView pai;
    QStringView chave;
    QStringView chaveLingua; // in section VISTREL_frmMain
    QStringView omissao;
    bool comEstado; // shown only when the database holds something for it
    QStringView form;
    QStringView icone;
    AccaoMenu accao;
};

std::span<const EntradaMenu> menuPrincipal();
