// SPDX-License-Identifier: Apache-2.0
// Holds nothing: what it is compiled with, the headers that every test includes, is all it is for.
