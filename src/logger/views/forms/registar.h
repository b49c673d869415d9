#pragma once

class RegistoForms;

// Makes the views of missions known by their names.
void registarVistasDosRegistadores(RegistoForms &forms);
