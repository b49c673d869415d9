#include "core/modErros.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"

#include <QRegularExpression>

#include <new>

namespace {

// One text is one line: what follows a line feed would be read as a section or a key of its own.
QString numaLinha(QString texto) {
    static const QRegularExpression quebras(u"[\\r\\n]+"_s);
    return texto.replace(quebras, u" "_s);
}

} // namespace

namespace modErros {

bool GravarRegistoErro(qint16 tipo, const QString &data, const QString &l1, const QString &l2, const QString &l3,
                       const QString &l4) {
    const auto anel = u"Errors"_s;
    const auto indice = u"INDEX"_s;
    const auto id = u"ID"_s;
    bool numero = false;
    const int ultimo = modINI::GetSetting(anel, indice, id).toInt(&numero);
    const int n = numero && ultimo >= 0 && ultimo < entradasDoAnel ? ultimo + 1 : 1;
    const QString seccao = u'E' + QString::number(n);
    QList<modINI::Definicao> valores = {{indice, id, QString::number(n)},
                                        {seccao, u"Soft"_s, u"Vistrel"_s},
                                        {seccao, u"Type"_s, tipo == aviso ? u"WARNING"_s : u"ERROR"_s},
                                        {seccao, u"Date"_s, numaLinha(data)}};
    int linha = 0;
    for (const QString &texto : {l1, l2, l3, l4}) {
        ++linha;
        if (!texto.isEmpty())
            valores.append({seccao, u'L' + QString::number(linha), numaLinha(texto)});
    }
    return modINI::SaveSettings(anel, valores);
}

void GuardarErro(qint16 tipo, const QString &data, const QString &l1, const QString &l2, const QString &l3,
                 const QString &l4) {
    passarEventos();
    try {
        GravarRegistoErro(tipo, data, l1, l2, l3, l4);
    } catch (...) { // logging must never be the failure
    }
    passarEventos();
}

void TratarErro(const QString &fonte, const QString &descricao, const QString &numero) {
    const auto texto = [](const QString &chave, const QString &omissao) {
        return modTraducoes::texto(u"modMain"_s, chave, omissao);
    };
    const QString fim = u"\r\n"_s;
    const QDateTime agora = estado().ambiente.agora();
    const QString data = datas::textoDataHora(agora);
    const QString mensagem = u"Vistrel...:" + fim + texto(u"L2"_s, u"Fonte.....: "_s) + fonte + fim +
                             texto(u"L3"_s, u"Número....: "_s) + numero + fim + texto(u"L4"_s, u"Descrição.: "_s) +
                             descricao + fim + texto(u"Lx"_s, u"Data......: "_s) + data;
    GuardarErro(erro, data, u"Font: " + fonte, u"Number: " + numero, u"Description: " + descricao, {});

    Apresentador *apresentador = estado().ambiente.apresentador;
    if (!apresentador || apresentador->FormEstaActivo(u"frmErro"_s))
        return;
    apresentador->carregarErro(descricao, mensagem);
    if (!apresentador->mostrarErro())
        apresentador->mostrarErro();
    apresentador->destacarErro(mensagem);
}

void tratarExcepcaoCorrente(const char *fonte) {
    const QString nome = QString::fromUtf8(fonte);
    try {
        throw;
    } catch (const Interrompido &) {
    } catch (const Falha &f) {
        TratarErro(nome, f.descricao(), QString::number(f.numero()));
    } catch (const std::bad_alloc &) {
        TratarErro(nome, u"Memória insuficiente"_s, QString::number(erros::semMemoria));
    } catch (const std::exception &e) {
        TratarErro(nome, QString::fromUtf8(e.what()), QString::number(erros::chamadaInvalida));
    } catch (...) {
        TratarErro(nome, u"Falha desconhecida"_s, QString::number(erros::chamadaInvalida));
    }
}

} // namespace modErros
