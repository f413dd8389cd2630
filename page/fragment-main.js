// The entry of the page of HTML reports.

import { openfile, showreport } from './fragment.js';

const data = JSON.parse(document.getElementById('data').textContent);
const main = document.getElementById('reports');
const contents = document.createElement('ul');
main.textContent = '';
data.reports.forEach((report, i) => showreport(report, `report${i + 1}`, main, contents));
document.querySelector('nav').append(contents);
window.openfile = openfile;
// The part that the address names did not exist when the page was opened.
document.getElementById(location.hash.slice(1))?.scrollIntoView();
