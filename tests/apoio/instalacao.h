#pragma once

#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "tests/apoio/duplos.h"
#include "tests/apoio/tabela.h"

// One installation in a temporary folder: the program's folder, the settings folder that its Kelvark.ini names, and,
// if wanted, an empty database, opened as the program opens it. The state of the process is made anew before and
// after; clock, locale, dialogs and error road are the test's. Make it a local variable or a member of the test.
class Instalacao {
public:
    enum class Base { Nenhuma, Vazia };
    struct Sensor {
        QString SensorID;
        QString Descricao;
        QString Tipo = u"P 1250C"_s;
        QString Seleccionado = u"SIM"_s;
        int Grupo = 0;
        QString Fonte = u"POSEIDON"_s;
        QString PoseidonIP = u"2127.0.0.2"_s;
    };
    struct Leitura {
        QString Data; // "YYYY-MM-DD HH:MM:SS"
        QVariant valor;
        QVariant Observacoes = {};
        QVariant flag = u" "_s;
    };
    struct Texto {
        QString seccao, chave, valor;
    };

    explicit Instalacao(Base base = Base::Vazia, const QLocale &locale = QLocale(u"pt_PT"_s));
    ~Instalacao();
    Instalacao(const Instalacao &) = delete;
    Instalacao &operator=(const Instalacao &) = delete;

    // Fails the test for expected reports and dialogs that did not come; the destructor does it too.
    void verificar();
    // A new start of the process on the same folders (the database stays closed).
    void reiniciar();

    QString pastaPrograma() const { return m_raiz.filePath(u"programa"_s); }
    QString pastaINI() const { return m_raiz.filePath(u"definicoes"_s); }
    QString caminhoBD() const { return m_raiz.filePath(u"BD/Kelvark.mdb"_s); }
    QString ficheiro(const QString &nome) const { return m_raiz.filePath(nome); } // any other in the temporary folder
    static void escreverFicheiro(const QString &caminho, const QByteArray &bytes);
    static QByteArray lerFicheiro(const QString &caminho);

    void criarBase(const QString &caminho) const; // an empty database of the present schema
    void abrirBase();                             // stores the path in the settings and connects
    void relogio(const QString &instante);        // "YYYY-MM-DD HH:MM:SS"
    void locale(const QString &nome);
    void ficheiroLingua(const QString &codigo, const QList<Texto> &textos) const;
    void usarLingua(const QString &codigo) const;

    // Rows; all need the open database.
    void sensor(const Sensor &s) const;
    void sensores(const QList<Sensor> &lista) const;
    // `tabela` is any reading table; the name of its value column follows from it.
    void leituras(const QString &tabela, const QString &sensor, const QList<Leitura> &linhas) const;
    // Values at equal spacing.
    void leituras(const QString &tabela, const QString &sensor, const QString &inicio, int passoSegundos,
                  const QList<double> &valores, const QVariant &observacoes = {}) const;
    void executar(const QString &sql, const QVariantList &valores = {}) const;
    QVariantList linha(const QString &sql) const; // first row, texts as texts; empty when there is none
    static QString colunaDoValor(const QString &tabela);

    ApresentadorDeTeste erros;
    DialogosDeTeste dialogos;

private:
    void prepararEstado();
    QTemporaryDir m_raiz;
    QDateTime m_agora;
    QLocale m_locale;
};
