"use strict";
const data = JSON.parse(document.getElementById("data").textContent);
document.body.append(data.project.name);
