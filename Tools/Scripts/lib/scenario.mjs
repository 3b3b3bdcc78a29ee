// Docs/scenario.md, from the description of scenarios.
import { readFileSync } from 'node:fs';

const schemaFile = new URL('../../../Docs/scenario.schema.json', import.meta.url);

export function scenarioReference() {
  const schema = JSON.parse(readFileSync(schemaFile, 'utf8'));
  const resolved = (node) => (node.$ref ? schema.$defs[node.$ref.split('/').at(-1)] : node);
  const rows = [];

  function typeOf(node) {
    if (node.enum) return node.enum.map((each) => `\`${each}\``).join(', ');
    if ('const' in node) return `\`${node.const}\``;
    if (node.type === 'integer') return `${node.minimum} to ${node.maximum}`;
    if (node.type === 'array') return 'list';
    return { string: 'text', boolean: 'true or false', object: '' }[node.type] ?? 'text, or list of texts';
  }

  function add(path, given, required) {
    const node = resolved(given);
    const ending = required ? ' Required.' : 'default' in node ? ` Default: \`${node.default}\`.` : '';
    rows.push(`| \`${path}\` | ${typeOf(node)} | ${node.description}${ending} |`);
    if (given.$ref || given.items?.$ref) return;
    addMembers(node.type === 'array' ? `${path}.N` : path, node.type === 'array' ? node.items : node);
  }

  function addMembers(path, node) {
    for (const [key, member] of Object.entries(node.properties ?? {}))
      add(path ? `${path}.${key}` : key, member, node.required?.includes(key));
  }

  const table = () => `| Key | Value | Meaning |\n|---|---|---|\n${rows.splice(0).join('\n')}\n`;
  addMembers('', schema);
  let text = `# Scenarios

${schema.description} \`N\` is a place in a list, from 0. The same for editors and programs: [scenario.schema.json](scenario.schema.json);
a scenario may name it (\`"$schema": "../../Docs/scenario.schema.json"\`).

${table()}`;
  for (const [name, node] of Object.entries(schema.$defs)) {
    for (const variant of node.oneOf ?? [node]) addMembers('', variant);
    const unique = [...new Set(rows.splice(0))];
    rows.push(...unique);
    text += `\n## A ${name}\n\n${table()}`;
  }
  return text;
}
