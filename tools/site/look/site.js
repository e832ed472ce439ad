// Search, in an index that is a script too, so that it works where pages are files: it is loaded when
// somebody first wants to search.
(() => {
  const up = document.body.dataset.up;
  const input = document.getElementById('search');
  const list = document.getElementById('results');
  const most = 40;

  // On a narrow screen the list of pages is closed until it is wanted.
  const pages = document.querySelector('nav details');
  const narrow = matchMedia('(max-width: 50rem)');
  const fold = () => { pages.open = !narrow.matches; };
  narrow.addEventListener('change', fold);
  fold();

  let wanted = null;
  const index = () => wanted ??= new Promise((done, failed) => {
    const script = document.createElement('script');
    script.src = up + 'search-index.js';
    script.onload = () => done(window.searchIndex);
    script.onerror = failed;
    document.head.append(script);
  });

  // Higher is better, 0 is none: each word has to be found.
  const worth = ([title, , kind, text], words) => {
    const name = title.toLowerCase();
    const said = text.toLowerCase();
    let sum = 0;
    for (const word of words) {
      if (name === word) sum += 100;
      else if (name.startsWith(word)) sum += 40;
      else if (name.includes(word)) sum += 20;
      else if (said.includes(word)) sum += 5;
      else return 0;
    }
    return sum + (kind === 'C' ? 0 : 3) - name.length / 100;
  };

  const item = ([title, address, kind, text]) => {
    const link = document.createElement('a');
    const about = document.createElement('small');
    link.href = up + address;
    link.textContent = title;
    about.textContent = kind + (text ? ': ' + text.slice(0, 110) : '');
    link.append(about);
    const line = document.createElement('li');
    line.append(link);
    return line;
  };

  const search = async () => {
    const words = input.value.toLowerCase().split(/\s+/).filter(Boolean);
    list.hidden = words.length === 0;
    if (list.hidden) return;
    const found = (await index()).map(each => [worth(each, words), each]).filter(([sum]) => sum > 0)
      .sort(([a], [b]) => b - a).slice(0, most).map(([, each]) => item(each));
    if (found.length === 0) {
      const nothing = document.createElement('li');
      nothing.className = 'nothing';
      nothing.textContent = 'Nothing has all of these words.';
      found.push(nothing);
    }
    list.replaceChildren(...found);
    list.querySelector('a')?.classList.add('chosen');
  };

  const choose = step => {
    const links = [...list.querySelectorAll('a')];
    const at = links.findIndex(link => link.classList.contains('chosen'));
    const next = links[Math.min(Math.max(at + step, 0), links.length - 1)];
    if (!next) return;
    links[at]?.classList.remove('chosen');
    next.classList.add('chosen');
    next.scrollIntoView({block: 'nearest'});
  };

  input.addEventListener('focus', index);
  input.addEventListener('input', search);
  input.addEventListener('keydown', event => {
    if (event.key === 'ArrowDown' || event.key === 'ArrowUp') {
      event.preventDefault();
      choose(event.key === 'ArrowDown' ? 1 : -1);
    } else if (event.key === 'Enter') {
      list.querySelector('a.chosen')?.click();
    } else if (event.key === 'Escape') {
      input.value = '';
      list.hidden = true;
    }
  });
  list.addEventListener('click', () => { list.hidden = true; });
  document.addEventListener('click', event => {
    if (!event.target.closest('.search')) list.hidden = true;
  });
  document.addEventListener('keydown', event => {
    if (event.key === '/' && !/INPUT|TEXTAREA/.test(document.activeElement.tagName)) {
      event.preventDefault();
      input.focus();
    }
  });
})();
