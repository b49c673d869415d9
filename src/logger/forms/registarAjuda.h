#pragma once

class RegistoForms;

// Puts the set-up of the 1-Wire adapter into the registry.
void registarAjuda(RegistoForms &forms);
